#pragma once
// The parsed form of an ECMAScript RegExp pattern (without the u flag, with
// the web-compatibility grammar of Annex B).

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "regex/CodePointSet.h"

namespace vantorel {

enum class EcmaNodeKind {
    Alternation,      // children: the alternatives, each a Sequence
    Sequence,         // children: the terms in order
    Character,        // codePoint
    CharacterSet,     // setKind; for a class also `set` and `negated`
    LineStart,        // ^ (always multi-line)
    LineEnd,          // $ (always multi-line)
    WordBoundary,     // \b, or \B when `negated`
    Group,            // children[0]: an Alternation; group: capture number, 0 if none
    Lookahead,        // children[0]; `negated` for (?!
    Lookbehind,       // children[0]; `negated` for (?<!
    Backreference,    // group
    Repeat,           // children[0]: the atom; min, max, greedy
};

enum class EcmaSetKind {
    Class,                 // [...]
    AnyButLineTerminator,  // .
    Digit, NotDigit, Space, NotSpace, Word, NotWord,
};

struct EcmaNode {
    static constexpr std::uint32_t kUnbounded = UINT32_MAX;

    EcmaNodeKind kind = EcmaNodeKind::Sequence;
    std::size_t offset = 0;  // in characters of the typed pattern
    char32_t codePoint = 0;
    EcmaSetKind setKind = EcmaSetKind::Class;
    CodePointSet set;        // the members written between the brackets
    bool negated = false;
    std::uint32_t group = 0;
    std::string name;        // a named group's name, or the name a \k<name> refers to
    std::uint32_t min = 0;
    std::uint32_t max = 0;
    bool greedy = true;
    std::vector<EcmaNode> children;
};

struct EcmaPattern {
    EcmaNode root;  // an Alternation
    std::uint32_t captureCount = 0;
    // The name of each capture group by number - 1; empty when unnamed.
    std::vector<std::string> groupNames;
};

// The characters of ECMAScript's \d \D \s \S \w \W and of `.` (multi-line).
CodePointSet ecmaStandardSet(EcmaSetKind kind);

}  // namespace vantorel
