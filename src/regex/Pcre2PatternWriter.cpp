#include "regex/Pcre2PatternWriter.h"

#include <algorithm>
#include <array>

#include "regex/EcmaCaseFolding.h"

namespace vantorel {
namespace {

CodePointSet withoutSurrogates(CodePointSet set) {
    set.removeRange(0xD800, 0xDFFF);
    return set;
}

std::vector<bool> windows1252Bytes(const CodePointSet& set) {
    std::vector<bool> bytes(256);
    for (unsigned b = 0; b < 256; ++b)
        bytes[b] = set.contains(windows1252ToCodePoint(static_cast<unsigned char>(b)));
    return bytes;
}

// Runs of bytes whose flag equals `value`.
std::vector<std::pair<unsigned, unsigned>> byteRuns(const std::vector<bool>& bytes, bool value) {
    std::vector<std::pair<unsigned, unsigned>> runs;
    for (unsigned b = 0; b < 256; ++b) {
        if (bytes[b] != value) continue;
        if (!runs.empty() && runs.back().second == b - 1) runs.back().second = b;
        else runs.emplace_back(b, b);
    }
    return runs;
}

void appendHex(std::string& out, std::uint32_t value, int digits) {
    static constexpr char kHex[] = "0123456789abcdef";
    for (int shift = (digits - 1) * 4; shift >= 0; shift -= 4) out += kHex[(value >> shift) & 0xF];
}

bool isPcre2NameCharacter(char c, bool first) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' || (!first && c >= '0' && c <= '9');
}

// The set escapes that PCRE2 (without UCP) gives ECMAScript's meaning.
struct SetEscape {
    EcmaSetKind kind;
    const char* spelling;
};
constexpr std::array<SetEscape, 4> kSetEscapes = {{{EcmaSetKind::Digit, "\\d"},
                                                   {EcmaSetKind::NotDigit, "\\D"},
                                                   {EcmaSetKind::Word, "\\w"},
                                                   {EcmaSetKind::NotWord, "\\W"}}};

// A class that matches no character, one character long (so that it may
// stand in a look-behind like any other). Not the empty class "[]": PCRE2
// 10.42 fails "[]?" and "[]*" where they should match the empty string.
constexpr const char* kNoByte = "[^\\x00-\\xff]";
constexpr const char* kNoCodePoint = "[^\\x00-\xf4\x8f\xbf\xbf]";  // up to U+10FFFF

}  // namespace

Pcre2PatternWriter::Pcre2PatternWriter(TextEncoding target, bool ignoreCase)
    : target_(target), ignoreCase_(ignoreCase) {}

TranslatedPattern Pcre2PatternWriter::write(const EcmaPattern& pattern) {
    pattern_ = &pattern;
    result_ = {};
    writeNode(pattern.root);
    return std::move(result_);
}

void Pcre2PatternWriter::writeNode(const EcmaNode& node) {
    result_.offsetMap.emplace_back(out().size(), node.offset);
    const bool utf8 = target_ == TextEncoding::Utf8;
    switch (node.kind) {
        case EcmaNodeKind::Alternation:
            for (std::size_t i = 0; i < node.children.size(); ++i) {
                if (i > 0) out() += '|';
                writeNode(node.children[i]);
            }
            break;
        case EcmaNodeKind::Sequence:
            for (const EcmaNode& child : node.children) writeNode(child);
            break;
        case EcmaNodeKind::Character: {
            CodePointSet set;
            if (ignoreCase_) {
                for (char32_t cp : EcmaCaseFolding::instance().equivalents(node.codePoint)) set.add(cp);
            } else {
                set.add(node.codePoint);
            }
            writeSet(std::move(set));
            break;
        }
        case EcmaNodeKind::CharacterSet: {
            CodePointSet set = node.setKind == EcmaSetKind::Class ? node.set : ecmaStandardSet(node.setKind);
            if (ignoreCase_) set = EcmaCaseFolding::instance().closure(set);
            if (node.negated) set = set.complement();
            writeSet(std::move(set));
            break;
        }
        case EcmaNodeKind::LineStart:
            out() += utf8 ? "(?<![^\\n\\r\\u2028\\u2029])" : "(?<![^\\n\\r])";
            break;
        case EcmaNodeKind::LineEnd:
            out() += utf8 ? "(?![^\\n\\r\\u2028\\u2029])" : "(?![^\\n\\r])";
            break;
        case EcmaNodeKind::WordBoundary:
            out() += node.negated ? "\\B" : "\\b";
            break;
        case EcmaNodeKind::Group:
        case EcmaNodeKind::Lookahead:
        case EcmaNodeKind::Lookbehind:
            writeGroupOpening(node);
            writeNode(node.children.front());
            out() += ')';
            break;
        case EcmaNodeKind::Backreference:
            out() += ignoreCase_ ? "(?i:\\g{" : "\\g{";
            out() += std::to_string(node.group);
            out() += ignoreCase_ ? "})" : "}";
            break;
        case EcmaNodeKind::Repeat:
            writeRepeat(node);
            break;
    }
}

void Pcre2PatternWriter::writeGroupOpening(const EcmaNode& node) {
    if (node.kind == EcmaNodeKind::Lookahead) {
        out() += node.negated ? "(?!" : "(?=";
    } else if (node.kind == EcmaNodeKind::Lookbehind) {
        out() += node.negated ? "(?<!" : "(?<=";
    } else if (node.group == 0) {
        out() += "(?:";
    } else if (node.name.empty()) {
        out() += '(';
    } else {
        out() += "(?<";
        out() += pcre2GroupName(node);
        out() += '>';
    }
}

// The group's name if PCRE2 accepts it (ASCII letters, digits and _, at most
// 32), else an internal name that no typed name uses.
std::string Pcre2PatternWriter::pcre2GroupName(const EcmaNode& group) {
    const std::string& name = group.name;
    bool valid = name.size() <= 32;
    for (std::size_t i = 0; valid && i < name.size(); ++i) valid = isPcre2NameCharacter(name[i], i == 0);
    if (valid) return name;
    std::string internal = std::to_string(group.group);
    internal.insert(0, 1, 'g');
    const auto& names = pattern_->groupNames;
    while (std::find(names.begin(), names.end(), internal) != names.end()) internal.insert(0, 1, '_');
    result_.renamedGroups.emplace_back(internal, name);
    return internal;
}

void Pcre2PatternWriter::writeRepeat(const EcmaNode& node) {
    if (node.min > kMaxRepeat)
        throw PatternError("Repetition counts above " + std::to_string(kMaxRepeat) + " are not supported",
                           node.offset);
    const EcmaNode& atom = node.children.front();
    // PCRE2 would treat a repeated assertion as optional; a group repeats it.
    // PCRE2's JIT fails a back-reference to a group that did not take part
    // when it is repeated at least once (\1+, \1{2}), where it should match
    // the empty string; inside a group it does.
    const bool wrap = atom.kind == EcmaNodeKind::Lookahead || atom.kind == EcmaNodeKind::Backreference;
    if (wrap) out() += "(?:";
    writeNode(atom);
    if (wrap) out() += ')';
    // A maximum beyond PCRE2's limit is as good as none.
    const std::uint32_t max = node.max > kMaxRepeat ? EcmaNode::kUnbounded : node.max;
    if (node.min == 0 && max == EcmaNode::kUnbounded) {
        out() += '*';
    } else if (node.min == 1 && max == EcmaNode::kUnbounded) {
        out() += '+';
    } else if (node.min == 0 && max == 1) {
        out() += '?';
    } else {
        out() += '{';
        out() += std::to_string(node.min);
        if (max != node.min) {
            out() += ',';
            if (max != EcmaNode::kUnbounded) out() += std::to_string(max);
        }
        out() += '}';
    }
    if (!node.greedy) out() += '?';
}

void Pcre2PatternWriter::writeSet(CodePointSet set) {
    if (target_ == TextEncoding::Utf8) writeUnicodeSet(withoutSurrogates(std::move(set)));
    else writeByteSet(windows1252Bytes(set));
}

// Valid UTF-8 never holds a surrogate, so `set` has none and a class may
// include or exclude them as is shortest.
void Pcre2PatternWriter::writeUnicodeSet(CodePointSet set) {
    static const CodePointSet everything = withoutSurrogates(CodePointSet::all());
    if (set.empty()) {
        out() += kNoCodePoint;
        return;
    }
    if (set == everything) {
        out() += "(?s:.)";
        return;
    }
    if (set.count() == 1) {
        writeLiteral(set.ranges().front().first);
        return;
    }
    for (const SetEscape& escape : kSetEscapes) {
        if (set == withoutSurrogates(ecmaStandardSet(escape.kind))) {
            out() += escape.spelling;
            return;
        }
    }
    const CodePointSet others = withoutSurrogates(set.complement());
    const bool negate = others.ranges().size() < set.ranges().size();
    out() += negate ? "[^" : "[";
    for (const CodePointSet::Range& range : (negate ? others : set).ranges()) {
        writeLiteral(range.first);
        if (range.last == range.first) continue;
        if (range.last > range.first + 1) out() += '-';
        writeLiteral(range.last);
    }
    out() += ']';
}

void Pcre2PatternWriter::writeByteSet(const std::vector<bool>& bytes) {
    const auto members = byteRuns(bytes, true);
    if (members.empty()) {
        out() += kNoByte;
        return;
    }
    if (members.size() == 1 && members.front() == std::pair<unsigned, unsigned>(0, 255)) {
        out() += "(?s:.)";
        return;
    }
    if (members.size() == 1 && members.front().first == members.front().second) {
        writeLiteral(members.front().first);
        return;
    }
    for (const SetEscape& escape : kSetEscapes) {
        if (bytes == windows1252Bytes(ecmaStandardSet(escape.kind))) {
            out() += escape.spelling;
            return;
        }
    }
    const auto others = byteRuns(bytes, false);
    const bool negate = others.size() < members.size();
    out() += negate ? "[^" : "[";
    for (const auto& [first, last] : negate ? others : members) {
        writeLiteral(first);
        if (last == first) continue;
        if (last > first + 1) out() += '-';
        writeLiteral(last);
    }
    out() += ']';
}

void Pcre2PatternWriter::writeLiteral(char32_t value) {
    std::string& text = out();
    const bool alphanumeric = (value >= U'a' && value <= U'z') || (value >= U'A' && value <= U'Z') ||
                              (value >= U'0' && value <= U'9');
    if (alphanumeric || value == U' ' || value == U'_') {
        text += static_cast<char>(value);
    } else if (value > 0x20 && value < 0x7F) {
        text += '\\';  // a backslash before punctuation always means the character itself
        text += static_cast<char>(value);
    } else if (value < 0x100) {
        text += "\\x";
        appendHex(text, value, 2);
    } else if (value < 0x10000) {
        text += "\\u";
        appendHex(text, value, 4);
    } else {
        appendUtf8(text, value);
    }
}

}  // namespace vantorel
