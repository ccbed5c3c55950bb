#pragma once
// A replacement text expanded by ECMAScript's substitution rules:
// $$ a dollar sign, $& the match, $` the text before it, $' the text after
// it, $n and $nn a group, $<name> a named group. Anything else is literal,
// and backslashes are not special.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "regex/Regex.h"
#include "regex/TextEdits.h"

namespace vantorel {

// Receives the pieces of a rewritten text, in order.
class TextSink {
public:
    virtual ~TextSink() = default;
    virtual void write(std::string_view piece) = 0;
};

class StringSink : public TextSink {
public:
    explicit StringSink(std::string& target) : target_(target) {}
    void write(std::string_view piece) override { target_.append(piece); }

private:
    std::string& target_;
};

class ReplaceTemplate {
public:
    // Parses a UTF-8 replacement text against the groups of `pattern`.
    ReplaceTemplate(std::string_view replacement, const CompiledPattern& pattern);

    // The same template for text of another encoding; nothing when that
    // encoding cannot hold its literal text.
    std::optional<ReplaceTemplate> transcoded(TextEncoding encoding) const;

    void expand(const Match& match, TextSink& out) const;

private:
    enum class Kind { Literal, WholeMatch, Before, After, Group };
    struct Piece {
        Kind kind;
        std::string literal;
        std::uint32_t group = 0;  // 0 for a named group that does not exist
    };
    ReplaceTemplate() = default;
    std::vector<Piece> pieces_;
};

// Replaces every match (ECMAScript's global rule) and writes the new text to
// `out`. Returns the number of matches replaced. Given `edits`, appends where
// each match was and where its replacement went.
std::uint64_t replaceAll(const CompiledPattern& pattern, std::string_view subject,
                         const ReplaceTemplate& replacement, TextSink& out, TextEdits* edits = nullptr);

}  // namespace vantorel
