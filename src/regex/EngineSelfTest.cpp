#include "regex/EngineSelfTest.h"

#include "regex/Regex.h"

namespace vantorel {

std::optional<Message> EngineSelfTest(std::string_view pattern, std::string_view subject) {
    try {
        const Regex regex(pattern, false);
        regex.forEncoding(TextEncoding::Utf8).countMatches(subject);
        regex.forEncoding(TextEncoding::Windows1252).countMatches(subject);
        return std::nullopt;
    } catch (const std::exception&) {
        return Message{
            "Error starting the Regular Expression Engine.\r\n\r\n"
            "Vantorel requires Windows Script. Search for 'Windows script download' in your "
            "favourite search engine...",
            kProgramTitle, MessageIcon::Critical, MessageKind::Failure};
    }
}

}  // namespace vantorel
