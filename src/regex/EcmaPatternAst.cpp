#include "regex/EcmaPatternAst.h"

namespace vantorel {
namespace {

CodePointSet lineTerminators() {
    CodePointSet set;
    set.add(U'\n');
    set.add(U'\r');
    set.addRange(0x2028, 0x2029);
    return set;
}

CodePointSet whiteSpace() {
    CodePointSet set;
    set.addRange(0x09, 0x0D);  // tab, LF, VT, FF, CR
    for (char32_t cp : {0x20, 0xA0, 0x1680, 0x202F, 0x205F, 0x3000, 0xFEFF}) set.add(cp);
    set.addRange(0x2000, 0x200A);
    set.addRange(0x2028, 0x2029);
    return set;
}

CodePointSet wordCharacters() {
    CodePointSet set;
    set.addRange(U'0', U'9');
    set.addRange(U'A', U'Z');
    set.addRange(U'a', U'z');
    set.add(U'_');
    return set;
}

}  // namespace

CodePointSet ecmaStandardSet(EcmaSetKind kind) {
    switch (kind) {
        case EcmaSetKind::AnyButLineTerminator: return lineTerminators().complement();
        case EcmaSetKind::Digit: return CodePointSet::span(U'0', U'9');
        case EcmaSetKind::NotDigit: return CodePointSet::span(U'0', U'9').complement();
        case EcmaSetKind::Space: return whiteSpace();
        case EcmaSetKind::NotSpace: return whiteSpace().complement();
        case EcmaSetKind::Word: return wordCharacters();
        case EcmaSetKind::NotWord: return wordCharacters().complement();
        case EcmaSetKind::Class: break;
    }
    return {};
}

}  // namespace vantorel
