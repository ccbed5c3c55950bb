#include "regex/PatternTranslator.h"

#include <algorithm>

#include "regex/EcmaPatternParser.h"
#include "regex/Pcre2PatternWriter.h"

namespace vantorel {

TranslatedPattern translateEcmaPattern(std::string_view pattern, TextEncoding target,
                                       bool ignoreCase) {
    const EcmaPattern parsed = EcmaPatternParser(pattern).parse();
    return Pcre2PatternWriter(target, ignoreCase).write(parsed);
}

std::size_t TranslatedPattern::typedOffset(std::size_t pcre2Offset) const noexcept {
    const auto after = std::upper_bound(
        offsetMap.begin(), offsetMap.end(), pcre2Offset,
        [](std::size_t offset, const std::pair<std::size_t, std::size_t>& entry) { return offset < entry.first; });
    return after == offsetMap.begin() ? 0 : std::prev(after)->second;
}

}  // namespace vantorel
