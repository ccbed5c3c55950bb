#pragma once
// What the user typed becomes the find pattern and the replace text that the
// regular-expression engine receives.

#include <cstdint>
#include <string>
#include <string_view>

#include "core/PatternError.h"

namespace vantorel {

// A literal pattern for a plain text: the characters \ ^ * $ + ? . { } ( ) ] [ |
// are escaped with a backslash; nothing else is.
std::string EscapePlainText(std::string_view text);

// Lets a one-line box carry line breaks and tabs: "\r", "\n" and "\t" (in
// either case) become CR, LF and TAB, and "\\" becomes one backslash.
// Used in regular-expression mode only.
std::string TranslateReplaceEscapes(std::string_view replaceText);

struct PatternOptions {
    bool regularExpression = false;  // the find text is a regular expression
    bool wholeWords = false;         // plain text only: "\b" at both ends
};

struct JobPattern {
    std::string findPattern;
    std::string replaceText;
};

// One job's final find pattern and replace text.
JobPattern buildJobPattern(std::string_view findText, std::string_view replaceText,
                           const PatternOptions& options);

// Why a job's pattern was refused, as one line: in regular-expression mode
// led by the place in the typed text ("At character 3: ..."). In plain-text
// mode the pattern is not what was typed, so only the reason is given.
std::string describePatternError(const PatternError& error, bool regularExpression);

// Every match's engine operations on a UTF-8 text, each with a fresh engine
// object, multi-line and global always on.
std::string RegexReplaceAll(std::string_view text, std::string_view replacement,
                            std::string_view pattern, bool ignoreCase);
std::uint64_t CountMatches(std::string_view text, std::string_view pattern, bool ignoreCase);

}  // namespace vantorel
