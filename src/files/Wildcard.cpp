#include "files/Wildcard.h"

#include "core/SimpleCaseFolding.h"
#include "core/TextEncoding.h"

namespace vantorel {
namespace {

// Characters of a name or pattern: code points when valid UTF-8, else bytes.
std::u32string decodeName(std::string_view text) {
    std::u32string out;
    out.reserve(text.size());
    if (isValidUtf8(text)) {
        std::size_t pos = 0;
        while (pos < text.size()) out += decodeUtf8(text, pos);
    } else {
        for (unsigned char c : text) out += windows1252ToCodePoint(c);
    }
    return out;
}

char32_t fold(char32_t c) { return SimpleCaseFolding::instance().key(c); }

// True when `c`, or a character equal to it without regard to case, lies in
// the range lo..hi.
bool inRange(char32_t c, char32_t lo, char32_t hi) {
    if (c >= lo && c <= hi) return true;
    for (const char32_t other : SimpleCaseFolding::instance().equivalents(c))
        if (other >= lo && other <= hi) return true;
    return false;
}

struct Matcher {
    const std::u32string& p;
    const std::u32string& s;

    // Matches one set "[...]" starting at p[pi] == '[' against character c.
    // Returns the index after the set, or npos when the set is not closed.
    std::size_t matchSet(std::size_t pi, char32_t c, bool& matched) const {
        std::size_t i = pi + 1;
        bool negate = false;
        if (i < p.size() && p[i] == U'!') {
            negate = true;
            ++i;
        }
        bool found = false;
        bool first = true;
        while (i < p.size() && (p[i] != U']' || first)) {
            first = false;
            char32_t lo = p[i];
            char32_t hi = lo;
            if (i + 2 < p.size() && p[i + 1] == U'-' && p[i + 2] != U']') {
                hi = p[i + 2];
                i += 3;
            } else {
                ++i;
            }
            if (inRange(c, lo, hi)) found = true;
        }
        if (i >= p.size()) return std::u32string::npos;
        matched = found != negate;
        return i + 1;
    }

    bool run() const {
        std::size_t pi = 0, si = 0;
        std::size_t starP = std::u32string::npos, starS = 0;
        while (si < s.size() || pi < p.size()) {
            if (pi < p.size()) {
                const char32_t pc = p[pi];
                if (pc == U'*') {
                    starP = pi++;
                    starS = si;
                    continue;
                }
                if (pc == U'[' && pi + 1 < p.size() && p[pi + 1] == U']') {
                    pi += 2;  // "[]" matches nothing, consuming no character
                    continue;
                }
                if (si < s.size()) {
                    const char32_t sc = s[si];
                    bool ok = false;
                    std::size_t next = pi + 1;
                    if (pc == U'?') {
                        ok = true;
                    } else if (pc == U'#') {
                        ok = sc >= U'0' && sc <= U'9';
                    } else if (pc == U'[') {
                        const std::size_t after = matchSet(pi, sc, ok);
                        if (after == std::u32string::npos) ok = sc == U'[';  // unclosed: literal
                        else next = after;
                    } else {
                        ok = fold(pc) == fold(sc);
                    }
                    if (ok) {
                        pi = next;
                        ++si;
                        continue;
                    }
                }
            }
            if (starP == std::u32string::npos || starS >= s.size()) return false;
            pi = starP + 1;
            si = ++starS;
        }
        return true;
    }
};

std::string_view trimBlanks(std::string_view text) {
    const auto first = text.find_first_not_of(' ');
    if (first == std::string_view::npos) return {};
    const auto last = text.find_last_not_of(' ');
    return text.substr(first, last - first + 1);
}

}  // namespace

bool wildcardMatch(std::string_view pattern, std::string_view name) {
    const std::u32string p = decodeName(pattern);
    const std::u32string s = decodeName(name);
    return Matcher{p, s}.run();
}

std::vector<std::string> splitFilter(std::string_view filter) {
    std::vector<std::string> pieces;
    if (filter.empty()) return pieces;
    std::size_t start = 0;
    while (true) {
        const std::size_t semi = filter.find(';', start);
        pieces.emplace_back(trimBlanks(filter.substr(start, semi - start)));
        if (semi == std::string_view::npos) break;
        start = semi + 1;
    }
    return pieces;
}

bool matchesAny(const std::vector<std::string>& patterns, std::string_view name) {
    for (const std::string& pattern : patterns)
        if (!pattern.empty() && wildcardMatch(pattern, name)) return true;
    return false;
}

}  // namespace vantorel
