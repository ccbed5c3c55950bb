#include "regex/PatternConstruction.h"

#include "regex/Regex.h"
#include "regex/ReplaceTemplate.h"

namespace vantorel {

std::string EscapePlainText(std::string_view text) {
    std::string out;
    out.reserve(text.size() + text.size() / 4);
    for (const char c : text) {
        switch (c) {
            case '\\': case '^': case '*': case '$': case '+': case '?': case '.':
            case '{': case '}': case '(': case ')': case ']': case '[': case '|':
                out += '\\';
                break;
            default: break;
        }
        out += c;
    }
    return out;
}

std::string TranslateReplaceEscapes(std::string_view replaceText) {
    std::string out;
    out.reserve(replaceText.size());
    for (std::size_t i = 0; i < replaceText.size(); ++i) {
        const char c = replaceText[i];
        if (c == '\\' && i + 1 < replaceText.size()) {
            switch (replaceText[i + 1]) {
                case '\\': out += '\\'; ++i; continue;
                case 'r': case 'R': out += '\r'; ++i; continue;
                case 'n': case 'N': out += '\n'; ++i; continue;
                case 't': case 'T': out += '\t'; ++i; continue;
                default: break;
            }
        }
        out += c;
    }
    return out;
}

std::string describePatternError(const PatternError& error, bool regularExpression) {
    if (!regularExpression || error.offset() == PatternError::kNoPlace) return error.what();
    return "At character " + std::to_string(error.offset() + 1) + ": " + error.what();
}

JobPattern buildJobPattern(std::string_view findText, std::string_view replaceText,
                           const PatternOptions& options) {
    JobPattern job;
    if (options.regularExpression) {
        job.findPattern = std::string(findText);
        job.replaceText = TranslateReplaceEscapes(replaceText);
    } else {
        job.findPattern = EscapePlainText(findText);
        if (options.wholeWords) job.findPattern = "\\b" + job.findPattern + "\\b";
        job.replaceText = std::string(replaceText);
    }
    return job;
}

std::string RegexReplaceAll(std::string_view text, std::string_view replacement,
                            std::string_view pattern, bool ignoreCase) {
    const Regex regex(pattern, ignoreCase);
    const CompiledPattern& compiled = regex.forEncoding(TextEncoding::Utf8);
    std::string out;
    StringSink sink(out);
    replaceAll(compiled, text, ReplaceTemplate(replacement, compiled), sink);
    return out;
}

std::uint64_t CountMatches(std::string_view text, std::string_view pattern, bool ignoreCase) {
    const Regex regex(pattern, ignoreCase);
    return regex.forEncoding(TextEncoding::Utf8).countMatches(text);
}

}  // namespace vantorel
