#pragma once
// Reads a pattern in the syntax of ECMAScript's RegExp as a browser accepts it
// without the u flag: the grammar of the standard plus the leniencies of its
// Annex B (octal and identity escapes, \c without a letter, lone ] { },
// "a{,3}" as literal text, [\w-#], ...). What ECMAScript refuses is refused
// with a PatternError whose offset counts characters (code points) of the
// typed pattern.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "regex/EcmaPatternAst.h"
#include "core/PatternError.h"

namespace vantorel {

class EcmaPatternParser {
public:
    // Groups may nest this deep; deeper nesting is refused.
    static constexpr int kMaxNesting = 200;

    // `pattern` is UTF-8; invalid UTF-8 is refused.
    explicit EcmaPatternParser(std::string_view pattern);

    EcmaPattern parse();

private:
    static constexpr char32_t kEnd = 0xFFFFFFFF;

    struct ClassAtom {
        std::size_t offset = 0;
        bool isSet = false;
        char32_t codePoint = 0;
        CodePointSet set;
    };

    std::u32string text_;
    std::size_t pos_ = 0;
    std::uint32_t totalCaptures_ = 0;
    bool hasNamedGroups_ = false;
    int nesting_ = 0;
    EcmaPattern result_;

    [[noreturn]] void fail(const std::string& message, std::size_t offset) const;
    char32_t peek(std::size_t ahead = 0) const noexcept;
    bool lookingAt(std::u32string_view text) const noexcept;

    void scanForCaptures();
    EcmaNode parseDisjunction();
    EcmaNode parseAlternative();
    void parseTerm(EcmaNode& sequence);
    EcmaNode parseGroup();
    EcmaNode parseAtomEscape();
    EcmaNode parseClass();
    ClassAtom parseClassAtom();
    char32_t parseCharacterEscape(bool joinSurrogates);
    char32_t parseLegacyOctal();
    std::string parseGroupName(const std::string& errorMessage, std::size_t errorOffset);
    char32_t parseNameEscape(const std::string& errorMessage, std::size_t errorOffset);
    // A braced quantifier {n}, {n,} or {n,m} at pos_; consumed only when valid.
    bool parseBracedQuantifier(std::uint32_t& min, std::uint32_t& max);
    bool parseQuantifier(EcmaNode& term, bool quantifiable, std::size_t termOffset);
    std::uint32_t parseDecimal();
    int hexValue(std::size_t ahead) const noexcept;
    void resolveNamedReferences(EcmaNode& node) const;
};

}  // namespace vantorel
