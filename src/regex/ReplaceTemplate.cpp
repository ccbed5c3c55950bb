#include "regex/ReplaceTemplate.h"

namespace vantorel {
namespace {

bool isDigit(char c) { return c >= '0' && c <= '9'; }

}  // namespace

ReplaceTemplate::ReplaceTemplate(std::string_view text, const CompiledPattern& pattern) {
    const std::uint32_t groups = pattern.captureCount();
    std::string literal;
    auto flush = [&] {
        if (!literal.empty()) pieces_.push_back({Kind::Literal, std::move(literal)});
        literal.clear();
    };
    auto add = [&](Kind kind, std::uint32_t group = 0) {
        flush();
        pieces_.push_back({kind, {}, group});
    };
    std::size_t i = 0;
    while (i < text.size()) {
        const char c = text[i];
        if (c != '$' || i + 1 >= text.size()) {
            literal += c;
            ++i;
            continue;
        }
        const char next = text[i + 1];
        if (next == '$') {
            literal += '$';
            i += 2;
        } else if (next == '&') {
            add(Kind::WholeMatch);
            i += 2;
        } else if (next == '`') {
            add(Kind::Before);
            i += 2;
        } else if (next == '\'') {
            add(Kind::After);
            i += 2;
        } else if (isDigit(next)) {
            // Two digits when both are there and name an existing group, else one.
            const std::uint32_t one = next - '0';
            if (i + 2 < text.size() && isDigit(text[i + 2])) {
                const std::uint32_t two = one * 10 + (text[i + 2] - '0');
                if (two >= 1 && two <= groups) {
                    add(Kind::Group, two);
                    i += 3;
                    continue;
                }
            }
            if (one >= 1 && one <= groups) {
                add(Kind::Group, one);
                i += 2;
            } else {
                literal += '$';
                ++i;
            }
        } else if (next == '<' && pattern.hasNamedGroups()) {
            const std::size_t close = text.find('>', i + 2);
            if (close == std::string_view::npos) {
                literal += "$<";
                i += 2;
            } else {
                add(Kind::Group, pattern.groupNumber(text.substr(i + 2, close - i - 2)));
                i = close + 1;
            }
        } else {
            literal += '$';
            ++i;
        }
    }
    flush();
}

std::optional<ReplaceTemplate> ReplaceTemplate::transcoded(TextEncoding encoding) const {
    if (encoding == TextEncoding::Utf8) return *this;
    ReplaceTemplate copy;
    copy.pieces_ = pieces_;
    for (Piece& piece : copy.pieces_) {
        if (piece.kind != Kind::Literal) continue;
        auto bytes = utf8ToWindows1252(piece.literal);
        if (!bytes) return std::nullopt;
        piece.literal = std::move(*bytes);
    }
    return copy;
}

void ReplaceTemplate::expand(const Match& match, TextSink& out) const {
    for (const Piece& piece : pieces_) {
        switch (piece.kind) {
            case Kind::Literal: out.write(piece.literal); break;
            case Kind::WholeMatch: out.write(match.value()); break;
            case Kind::Before: out.write(match.subject().substr(0, match.begin())); break;
            case Kind::After: out.write(match.subject().substr(match.end())); break;
            case Kind::Group:
                if (piece.group != 0)
                    if (auto value = match.group(piece.group)) out.write(*value);
                break;
        }
    }
}

namespace {

// Passes the pieces on and counts their bytes.
class CountingSink : public TextSink {
public:
    explicit CountingSink(TextSink& out) : out_(out) {}
    void write(std::string_view piece) override {
        out_.write(piece);
        count_ += piece.size();
    }
    std::size_t count() const noexcept { return count_; }

private:
    TextSink& out_;
    std::size_t count_ = 0;
};

// Copies the text between matches and lets `expand` write each match's replacement.
template <class Expand>
std::uint64_t rewrite(const CompiledPattern& pattern, std::string_view subject, TextSink& out, Expand expand) {
    std::uint64_t count = 0;
    std::size_t copied = 0;
    pattern.forEachMatch(subject, [&](const Match& match) {
        out.write(subject.substr(copied, match.begin() - copied));
        expand(match);
        copied = match.end();
        ++count;
        return true;
    });
    out.write(subject.substr(copied));
    return count;
}

}  // namespace

std::uint64_t replaceAll(const CompiledPattern& pattern, std::string_view subject,
                         const ReplaceTemplate& replacement, TextSink& out, TextEdits* edits) {
    if (!edits) return rewrite(pattern, subject, out, [&](const Match& match) { replacement.expand(match, out); });
    CountingSink counted(out);
    return rewrite(pattern, subject, counted, [&](const Match& match) {
        const std::size_t newBegin = counted.count();
        replacement.expand(match, counted);
        edits->push_back({match.begin(), match.end(), newBegin, counted.count()});
    });
}

}  // namespace vantorel
