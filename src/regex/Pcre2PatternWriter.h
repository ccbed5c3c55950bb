#pragma once
// Writes a parsed ECMAScript pattern as a PCRE2 pattern with the same meaning
// for text of one encoding, to be compiled with PCRE2_ALT_BSUX and
// PCRE2_MATCH_UNSET_BACKREF (and PCRE2_UTF for UTF-8 text).
//
// - Every character set (., \s, classes, a literal matched without regard to
//   case) is spelled out with ECMAScript's members; in Windows-1252 text each
//   member becomes its byte, and a member the code page lacks is dropped.
// - ^ and $ test for ECMAScript's line terminators on either side.
// - Case-insensitive literals become classes such as [Hh], which PCRE2 turns
//   back into one caseless character and so keeps its literal optimisations.
//   Back-references use PCRE2's caseless comparison.

#include <cstdint>
#include <string>
#include <vector>

#include "regex/EcmaPatternAst.h"
#include "regex/PatternTranslator.h"

namespace vantorel {

class Pcre2PatternWriter {
public:
    // PCRE2 refuses larger repetition counts.
    static constexpr std::uint32_t kMaxRepeat = 65535;

    Pcre2PatternWriter(TextEncoding target, bool ignoreCase);

    // Throws PatternError for what PCRE2 cannot express.
    TranslatedPattern write(const EcmaPattern& pattern);

private:
    TextEncoding target_;
    bool ignoreCase_;
    TranslatedPattern result_;
    const EcmaPattern* pattern_ = nullptr;

    std::string& out() { return result_.pcre2Pattern; }
    void writeNode(const EcmaNode& node);
    void writeGroupOpening(const EcmaNode& node);
    void writeRepeat(const EcmaNode& node);
    void writeSet(CodePointSet set);
    void writeUnicodeSet(CodePointSet set);
    void writeByteSet(const std::vector<bool>& bytes);
    // One character (a code point, or a byte for Windows-1252 text) in a form
    // that means itself both inside and outside a class.
    void writeLiteral(char32_t value);
    std::string pcre2GroupName(const EcmaNode& group);
};

}  // namespace vantorel
