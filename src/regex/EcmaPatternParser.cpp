#include "regex/EcmaPatternParser.h"

#include <algorithm>

#include "regex/EcmaUnicodeTables.h"
#include "core/TextEncoding.h"

namespace vantorel {
namespace {

bool isDigit(char32_t c) { return c >= U'0' && c <= U'9'; }
bool isOctalDigit(char32_t c) { return c >= U'0' && c <= U'7'; }
bool isAsciiLetter(char32_t c) { return (c >= U'a' && c <= U'z') || (c >= U'A' && c <= U'Z'); }
bool isLeadSurrogate(char32_t c) { return c >= 0xD800 && c <= 0xDBFF; }
bool isTrailSurrogate(char32_t c) { return c >= 0xDC00 && c <= 0xDFFF; }

bool inRanges(std::span<const ecma_tables::CodePointRange> ranges, char32_t cp) {
    auto it = std::upper_bound(ranges.begin(), ranges.end(), cp,
                               [](char32_t value, const auto& r) { return value < r.first; });
    return it != ranges.begin() && std::prev(it)->last >= cp;
}

bool isNameStart(char32_t cp) {
    return cp == U'$' || cp == U'_' || inRanges(ecma_tables::kIdStart, cp);
}

bool isNamePart(char32_t cp) {
    return cp == U'$' || cp == 0x200C || cp == 0x200D || inRanges(ecma_tables::kIdContinue, cp);
}

EcmaNode makeNode(EcmaNodeKind kind, std::size_t offset) {
    EcmaNode node;
    node.kind = kind;
    node.offset = offset;
    return node;
}

EcmaNode characterNode(char32_t cp, std::size_t offset) {
    EcmaNode node = makeNode(EcmaNodeKind::Character, offset);
    node.codePoint = cp;
    return node;
}

EcmaNode setNode(EcmaSetKind kind, std::size_t offset) {
    EcmaNode node = makeNode(EcmaNodeKind::CharacterSet, offset);
    node.setKind = kind;
    return node;
}

// The set escape for d D s S w W, if `c` is one.
bool classEscapeKind(char32_t c, EcmaSetKind& kind) {
    switch (c) {
        case U'd': kind = EcmaSetKind::Digit; return true;
        case U'D': kind = EcmaSetKind::NotDigit; return true;
        case U's': kind = EcmaSetKind::Space; return true;
        case U'S': kind = EcmaSetKind::NotSpace; return true;
        case U'w': kind = EcmaSetKind::Word; return true;
        case U'W': kind = EcmaSetKind::NotWord; return true;
        default: return false;
    }
}

const char* const kNothingToRepeat =
    "Nothing to repeat: a quantifier (*, +, ?, {n}) must follow a character or a group";

}  // namespace

EcmaPatternParser::EcmaPatternParser(std::string_view pattern) {
    text_.reserve(pattern.size());
    for (std::size_t i = 0; i < pattern.size();) {
        const auto lead = static_cast<unsigned char>(pattern[i]);
        const std::size_t length = lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
        if (!isValidUtf8(pattern.substr(i, length)))
            fail("The pattern is not valid UTF-8 text", text_.size());
        text_ += decodeUtf8(pattern, i);
    }
}

void EcmaPatternParser::fail(const std::string& message, std::size_t offset) const {
    throw PatternError(message, offset);
}

char32_t EcmaPatternParser::peek(std::size_t ahead) const noexcept {
    return pos_ + ahead < text_.size() ? text_[pos_ + ahead] : kEnd;
}

bool EcmaPatternParser::lookingAt(std::u32string_view text) const noexcept {
    return std::u32string_view(text_).substr(pos_).starts_with(text);
}

EcmaPattern EcmaPatternParser::parse() {
    scanForCaptures();
    result_.root = parseDisjunction();
    if (pos_ < text_.size()) fail("Unmatched ')'", pos_);  // only ')' ends a disjunction early
    result_.captureCount = static_cast<std::uint32_t>(result_.groupNames.size());
    resolveNamedReferences(result_.root);
    return std::move(result_);
}

// Counts the capture groups of the whole pattern and notes whether any has a
// name: both decide how escapes such as \2 and \k are read, even before the
// groups they refer to.
void EcmaPatternParser::scanForCaptures() {
    for (std::size_t i = 0; i < text_.size(); ++i) {
        const char32_t c = text_[i];
        if (c == U'\\') {
            ++i;
        } else if (c == U'[') {
            for (++i; i < text_.size() && text_[i] != U']'; ++i)
                if (text_[i] == U'\\') ++i;
        } else if (c == U'(') {
            if (i + 1 < text_.size() && text_[i + 1] == U'?') {
                if (i + 3 < text_.size() && text_[i + 2] == U'<' && text_[i + 3] != U'=' &&
                    text_[i + 3] != U'!') {
                    ++totalCaptures_;
                    hasNamedGroups_ = true;
                }
            } else {
                ++totalCaptures_;
            }
        }
    }
}

EcmaNode EcmaPatternParser::parseDisjunction() {
    EcmaNode alternation = makeNode(EcmaNodeKind::Alternation, pos_);
    alternation.children.push_back(parseAlternative());
    while (peek() == U'|') {
        ++pos_;
        alternation.children.push_back(parseAlternative());
    }
    return alternation;
}

EcmaNode EcmaPatternParser::parseAlternative() {
    EcmaNode sequence = makeNode(EcmaNodeKind::Sequence, pos_);
    while (pos_ < text_.size() && peek() != U'|' && peek() != U')') parseTerm(sequence);
    return sequence;
}

void EcmaPatternParser::parseTerm(EcmaNode& sequence) {
    const std::size_t offset = pos_;
    const char32_t c = peek();
    EcmaNode term;
    bool quantifiable = true;
    switch (c) {
        case U'^':
            ++pos_;
            term = makeNode(EcmaNodeKind::LineStart, offset);
            quantifiable = false;
            break;
        case U'$':
            ++pos_;
            term = makeNode(EcmaNodeKind::LineEnd, offset);
            quantifiable = false;
            break;
        case U'.':
            ++pos_;
            term = setNode(EcmaSetKind::AnyButLineTerminator, offset);
            break;
        case U'(':
            term = parseGroup();
            quantifiable = term.kind != EcmaNodeKind::Lookbehind;
            break;
        case U'[':
            term = parseClass();
            break;
        case U'\\':
            term = parseAtomEscape();
            quantifiable = term.kind != EcmaNodeKind::WordBoundary;
            break;
        case U'*':
        case U'+':
        case U'?':
            fail(kNothingToRepeat, offset);
        case U'{': {
            std::uint32_t min = 0, max = 0;
            if (parseBracedQuantifier(min, max)) fail(kNothingToRepeat, offset);
            ++pos_;
            term = characterNode(c, offset);
            break;
        }
        default:
            ++pos_;
            term = characterNode(c, offset);
            break;
    }
    parseQuantifier(term, quantifiable, offset);
    sequence.children.push_back(std::move(term));
}

bool EcmaPatternParser::parseQuantifier(EcmaNode& term, bool quantifiable, std::size_t termOffset) {
    const std::size_t offset = pos_;
    std::uint32_t min = 0, max = 0;
    switch (peek()) {
        case U'*': min = 0; max = EcmaNode::kUnbounded; ++pos_; break;
        case U'+': min = 1; max = EcmaNode::kUnbounded; ++pos_; break;
        case U'?': min = 0; max = 1; ++pos_; break;
        case U'{':
            if (!parseBracedQuantifier(min, max)) return false;
            break;
        default: return false;
    }
    if (!quantifiable) {
        fail(term.kind == EcmaNodeKind::Lookbehind
                 ? "A look-behind (?<=...) or (?<!...) cannot be repeated"
                 : "Nothing to repeat: ^, $, \\b and \\B cannot be repeated",
             offset);
    }
    if (min > max) fail("Numbers out of order in {} quantifier: the minimum exceeds the maximum", offset);
    bool greedy = true;
    if (peek() == U'?') {
        greedy = false;
        ++pos_;
    }
    EcmaNode repeat = makeNode(EcmaNodeKind::Repeat, termOffset);
    repeat.min = min;
    repeat.max = max;
    repeat.greedy = greedy;
    repeat.children.push_back(std::move(term));
    term = std::move(repeat);
    return true;
}

bool EcmaPatternParser::parseBracedQuantifier(std::uint32_t& min, std::uint32_t& max) {
    const std::size_t start = pos_;
    ++pos_;  // '{'
    if (!isDigit(peek())) {
        pos_ = start;
        return false;
    }
    min = max = parseDecimal();
    if (peek() == U',') {
        ++pos_;
        max = isDigit(peek()) ? parseDecimal() : EcmaNode::kUnbounded;
    }
    if (peek() != U'}') {
        pos_ = start;
        return false;
    }
    ++pos_;
    return true;
}

// Decimal digits, saturating at kUnbounded (a count that no text reaches).
std::uint32_t EcmaPatternParser::parseDecimal() {
    std::uint64_t value = 0;
    while (isDigit(peek())) {
        value = std::min<std::uint64_t>(value * 10 + (peek() - U'0'), EcmaNode::kUnbounded);
        ++pos_;
    }
    return static_cast<std::uint32_t>(value);
}

int EcmaPatternParser::hexValue(std::size_t ahead) const noexcept {
    const char32_t c = peek(ahead);
    if (c >= U'0' && c <= U'9') return static_cast<int>(c - U'0');
    if (c >= U'a' && c <= U'f') return static_cast<int>(c - U'a' + 10);
    if (c >= U'A' && c <= U'F') return static_cast<int>(c - U'A' + 10);
    return -1;
}

EcmaNode EcmaPatternParser::parseGroup() {
    const std::size_t open = pos_;
    ++pos_;  // '('
    if (nesting_ >= kMaxNesting)
        fail("Groups are nested too deeply (more than " + std::to_string(kMaxNesting) + " levels)", open);
    EcmaNode group;
    if (peek() != U'?') {
        group = makeNode(EcmaNodeKind::Group, open);
        result_.groupNames.emplace_back();
        group.group = static_cast<std::uint32_t>(result_.groupNames.size());
    } else if (lookingAt(U"?:")) {
        pos_ += 2;
        group = makeNode(EcmaNodeKind::Group, open);
    } else if (lookingAt(U"?=") || lookingAt(U"?!")) {
        group = makeNode(EcmaNodeKind::Lookahead, open);
        group.negated = peek(1) == U'!';
        pos_ += 2;
    } else if (lookingAt(U"?<=") || lookingAt(U"?<!")) {
        group = makeNode(EcmaNodeKind::Lookbehind, open);
        group.negated = peek(2) == U'!';
        pos_ += 3;
    } else if (lookingAt(U"?<")) {
        pos_ += 2;
        group = makeNode(EcmaNodeKind::Group, open);
        group.name = parseGroupName("Invalid capture group name", open);
        if (std::find(result_.groupNames.begin(), result_.groupNames.end(), group.name) !=
            result_.groupNames.end())
            fail("Duplicate capture group name '" + group.name + "'", open);
        result_.groupNames.push_back(group.name);
        group.group = static_cast<std::uint32_t>(result_.groupNames.size());
    } else {
        fail("Invalid group: '(?' must be followed by ':', '=', '!', '<=', '<!' or '<name>'", open);
    }
    ++nesting_;
    group.children.push_back(parseDisjunction());
    --nesting_;
    if (peek() != U')') fail("Missing ')' to close this group", open);
    ++pos_;
    return group;
}

// A group name after "<", up to and including ">": an identifier, which may
// be written with \u escapes.
std::string EcmaPatternParser::parseGroupName(const std::string& errorMessage, std::size_t errorOffset) {
    std::string name;
    bool first = true;
    while (true) {
        const char32_t c = peek();
        if (c == kEnd) fail(errorMessage, errorOffset);
        if (c == U'>') {
            ++pos_;
            break;
        }
        char32_t cp = c;
        if (c == U'\\') {
            ++pos_;
            cp = parseNameEscape(errorMessage, errorOffset);
        } else {
            ++pos_;
        }
        if (!(first ? isNameStart(cp) : isNamePart(cp))) fail(errorMessage, errorOffset);
        appendUtf8(name, cp);
        first = false;
    }
    if (name.empty()) fail(errorMessage, errorOffset);
    return name;
}

// \uHHHH, \uHHHH\uHHHH (a surrogate pair) or \u{H...} inside a group name.
char32_t EcmaPatternParser::parseNameEscape(const std::string& errorMessage, std::size_t errorOffset) {
    if (peek() != U'u') fail(errorMessage, errorOffset);
    ++pos_;
    if (peek() == U'{') {
        ++pos_;
        std::uint32_t value = 0;
        bool any = false;
        for (int digit; (digit = hexValue(0)) >= 0; ++pos_) {
            value = value * 16 + static_cast<std::uint32_t>(digit);
            if (value > CodePointSet::kMaxCodePoint) fail(errorMessage, errorOffset);
            any = true;
        }
        if (!any || peek() != U'}') fail(errorMessage, errorOffset);
        ++pos_;
        return value;
    }
    char32_t value = 0;
    for (std::size_t i = 0; i < 4; ++i) {
        const int digit = hexValue(i);
        if (digit < 0) fail(errorMessage, errorOffset);
        value = value * 16 + static_cast<char32_t>(digit);
    }
    pos_ += 4;
    if (isLeadSurrogate(value) && peek() == U'\\' && peek(1) == U'u') {
        char32_t trail = 0;
        bool ok = true;
        for (std::size_t i = 0; i < 4 && ok; ++i) {
            const int digit = hexValue(2 + i);
            ok = digit >= 0;
            trail = trail * 16 + static_cast<char32_t>(std::max(digit, 0));
        }
        if (ok && isTrailSurrogate(trail)) {
            pos_ += 6;
            return 0x10000 + ((value - 0xD800) << 10) + (trail - 0xDC00);
        }
    }
    return value;
}

EcmaNode EcmaPatternParser::parseAtomEscape() {
    const std::size_t offset = pos_;
    ++pos_;  // '\'
    const char32_t c = peek();
    if (c == kEnd) fail("\\ at end of pattern", offset);
    EcmaSetKind kind;
    if (classEscapeKind(c, kind)) {
        ++pos_;
        return setNode(kind, offset);
    }
    if (c == U'b' || c == U'B') {
        ++pos_;
        EcmaNode node = makeNode(EcmaNodeKind::WordBoundary, offset);
        node.negated = c == U'B';
        return node;
    }
    if (c >= U'1' && c <= U'9') {
        const std::size_t digits = pos_;
        const std::uint32_t number = parseDecimal();
        if (number <= totalCaptures_) {
            EcmaNode node = makeNode(EcmaNodeKind::Backreference, offset);
            node.group = number;
            return node;
        }
        // Not a group: an octal escape, or the digit 8 or 9 itself.
        pos_ = digits;
        if (c >= U'8') {
            ++pos_;
            return characterNode(c, offset);
        }
        return characterNode(parseLegacyOctal(), offset);
    }
    if (c == U'0') return characterNode(parseLegacyOctal(), offset);
    if (c == U'k' && hasNamedGroups_) {
        ++pos_;
        const char* message = "Invalid named reference: write \\k<name> with the name of a group";
        if (peek() != U'<') fail(message, offset);
        ++pos_;
        EcmaNode node = makeNode(EcmaNodeKind::Backreference, offset);
        node.name = parseGroupName(message, offset);
        return node;
    }
    if (c == U'c') {
        const char32_t letter = peek(1);
        if (isAsciiLetter(letter)) {
            pos_ += 2;
            return characterNode(letter % 32, offset);
        }
        // "\c" without a letter: the backslash stands for itself.
        return characterNode(U'\\', offset);
    }
    return characterNode(parseCharacterEscape(true), offset);
}

// An escape that stands for one character, at pos_ (after the backslash).
char32_t EcmaPatternParser::parseCharacterEscape(bool joinSurrogates) {
    const char32_t c = peek();
    ++pos_;
    switch (c) {
        case U'f': return 0x0C;
        case U'n': return 0x0A;
        case U'r': return 0x0D;
        case U't': return 0x09;
        case U'v': return 0x0B;
        case U'x': {
            const int high = hexValue(0), low = hexValue(1);
            if (high < 0 || low < 0) return c;
            pos_ += 2;
            return static_cast<char32_t>(high * 16 + low);
        }
        case U'u': {
            char32_t value = 0;
            for (std::size_t i = 0; i < 4; ++i) {
                const int digit = hexValue(i);
                if (digit < 0) return c;
                value = value * 16 + static_cast<char32_t>(digit);
            }
            pos_ += 4;
            // Two escapes forming a surrogate pair stand for one character of
            // the text (a single surrogate never occurs in valid text).
            if (joinSurrogates && isLeadSurrogate(value) && peek() == U'\\' && peek(1) == U'u') {
                const std::size_t save = pos_;
                pos_ += 1;
                const char32_t trail = parseCharacterEscape(false);
                if (isTrailSurrogate(trail)) return 0x10000 + ((value - 0xD800) << 10) + (trail - 0xDC00);
                pos_ = save;
            }
            return value;
        }
        default:
            return c;  // an identity escape: the character itself
    }
}

// Up to three octal digits with a value below 256 (\0 .. \377).
char32_t EcmaPatternParser::parseLegacyOctal() {
    char32_t value = peek() - U'0';
    ++pos_;
    if (isOctalDigit(peek())) {
        value = value * 8 + (peek() - U'0');
        ++pos_;
        if (value < 32 && isOctalDigit(peek())) {
            value = value * 8 + (peek() - U'0');
            ++pos_;
        }
    }
    return value;
}

EcmaNode EcmaPatternParser::parseClass() {
    const std::size_t open = pos_;
    ++pos_;  // '['
    EcmaNode node = setNode(EcmaSetKind::Class, open);
    if (peek() == U'^') {
        node.negated = true;
        ++pos_;
    }
    auto add = [&node](const ClassAtom& atom) {
        if (atom.isSet) node.set.add(atom.set);
        else node.set.add(atom.codePoint);
    };
    while (true) {
        if (peek() == kEnd) fail("Missing ']' to close this character class", open);
        if (peek() == U']') {
            ++pos_;
            break;
        }
        const ClassAtom from = parseClassAtom();
        if (peek() != U'-' || peek(1) == U']' || peek(1) == kEnd) {
            add(from);
            continue;
        }
        ++pos_;  // '-'
        const ClassAtom to = parseClassAtom();
        if (from.isSet || to.isSet) {
            // A class escape on either side: no range, just the three parts.
            add(from);
            node.set.add(U'-');
            add(to);
        } else if (from.codePoint > to.codePoint) {
            fail("Range out of order in character class", from.offset);
        } else {
            node.set.addRange(from.codePoint, to.codePoint);
        }
    }
    return node;
}

EcmaPatternParser::ClassAtom EcmaPatternParser::parseClassAtom() {
    ClassAtom atom;
    atom.offset = pos_;
    const char32_t c = peek();
    ++pos_;
    if (c != U'\\') {
        atom.codePoint = c;
        return atom;
    }
    const char32_t e = peek();
    if (e == kEnd) fail("\\ at end of pattern", atom.offset);
    EcmaSetKind kind;
    if (classEscapeKind(e, kind)) {
        ++pos_;
        atom.isSet = true;
        atom.set = ecmaStandardSet(kind);
    } else if (e == U'b') {
        ++pos_;
        atom.codePoint = 0x08;
    } else if (e == U'c') {
        const char32_t letter = peek(1);
        if (isAsciiLetter(letter) || isDigit(letter) || letter == U'_') {
            pos_ += 2;
            atom.codePoint = letter % 32;
        } else {
            atom.codePoint = U'\\';  // the 'c' is read next, as itself
        }
    } else if (isOctalDigit(e)) {
        atom.codePoint = parseLegacyOctal();
    } else if (e == U'k' && hasNamedGroups_) {
        fail("Invalid escape \\k in a character class", atom.offset);
    } else {
        atom.codePoint = parseCharacterEscape(false);
    }
    return atom;
}

void EcmaPatternParser::resolveNamedReferences(EcmaNode& node) const {
    if (node.kind == EcmaNodeKind::Backreference && !node.name.empty()) {
        const auto it = std::find(result_.groupNames.begin(), result_.groupNames.end(), node.name);
        if (it == result_.groupNames.end())
            fail("No capture group is named '" + node.name + "'", node.offset);
        node.group = static_cast<std::uint32_t>(it - result_.groupNames.begin()) + 1;
    }
    for (EcmaNode& child : node.children) resolveNamedReferences(child);
}

}  // namespace vantorel
