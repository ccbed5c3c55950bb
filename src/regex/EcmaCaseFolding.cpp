#include "regex/EcmaCaseFolding.h"

#include <algorithm>
#include <map>

#include "regex/EcmaUnicodeTables.h"

namespace vantorel {

const EcmaCaseFolding& EcmaCaseFolding::instance() {
    static const EcmaCaseFolding table;
    return table;
}

EcmaCaseFolding::EcmaCaseFolding() : canonical_(0x10000), classOf_(0x10000, kNoClass) {
    for (char32_t cp = 0; cp < 0x10000; ++cp) canonical_[cp] = static_cast<char16_t>(cp);
    for (const ecma_tables::CaseRun& run : ecma_tables::kCanonicalizeRuns)
        for (char32_t cp = run.first; cp <= run.last; cp += run.stride)
            canonical_[cp] = static_cast<char16_t>(static_cast<std::int32_t>(cp) + run.delta);

    std::map<char16_t, std::vector<char32_t>> byCanonical;
    for (char32_t cp = 0; cp < 0x10000; ++cp)
        if (canonical_[cp] != cp) byCanonical[canonical_[cp]].push_back(cp);
    for (auto& [canonical, members] : byCanonical) {
        members.push_back(canonical);
        std::sort(members.begin(), members.end());
        for (char32_t member : members) classOf_[member] = static_cast<std::uint16_t>(classes_.size());
        classes_.push_back(std::move(members));
    }
}

char32_t EcmaCaseFolding::canonicalize(char32_t cp) const noexcept {
    return cp < 0x10000 ? canonical_[cp] : cp;
}

std::vector<char32_t> EcmaCaseFolding::equivalents(char32_t cp) const {
    if (cp >= 0x10000 || classOf_[cp] == kNoClass) return {cp};
    return classes_[classOf_[cp]];
}

CodePointSet EcmaCaseFolding::closure(const CodePointSet& set) const {
    CodePointSet result = set;
    for (const std::vector<char32_t>& members : classes_) {
        bool any = false;
        for (char32_t member : members) any = any || set.contains(member);
        if (any)
            for (char32_t member : members) result.add(member);
    }
    return result;
}

}  // namespace vantorel
