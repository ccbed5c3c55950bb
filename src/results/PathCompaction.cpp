#include "results/PathCompaction.h"

#include <vector>

#include "core/TextEncoding.h"

namespace vantorel {
namespace {

// Byte offsets of the code points of valid UTF-8 (bytes otherwise).
std::vector<std::size_t> characterStarts(std::string_view text) {
    std::vector<std::size_t> starts;
    const bool utf8 = isValidUtf8(text);
    for (std::size_t i = 0; i < text.size(); ++i)
        if (!utf8 || (static_cast<unsigned char>(text[i]) & 0xC0) != 0x80) starts.push_back(i);
    return starts;
}

}  // namespace

std::string compactPath(std::string_view path, std::size_t maxChars) {
    static constexpr std::string_view kEllipsis = "...";
    const std::vector<std::size_t> starts = characterStarts(path);
    const std::size_t length = starts.size();
    if (length <= maxChars) return std::string(path);
    if (maxChars <= kEllipsis.size()) return std::string(kEllipsis.substr(0, maxChars));

    auto charsFrom = [&](std::size_t index) { return std::string(path.substr(index < length ? starts[index] : path.size())); };
    auto charsTo = [&](std::size_t count) { return std::string(path.substr(0, count < length ? starts[count] : path.size())); };

    const std::size_t slash = path.find_last_of('/');
    std::size_t nameIndex = 0;  // first character of the tail that is kept whole
    if (slash != std::string_view::npos)
        while (nameIndex < length && starts[nameIndex] < slash) ++nameIndex;  // the "/" before the name
    const std::size_t tailLength = length - nameIndex;
    const std::size_t room = maxChars - kEllipsis.size();
    if (slash != std::string_view::npos && tailLength <= room)
        return charsTo(room - tailLength) + std::string(kEllipsis) + charsFrom(nameIndex);
    return std::string(kEllipsis) + charsFrom(length - room);
}

}  // namespace vantorel
