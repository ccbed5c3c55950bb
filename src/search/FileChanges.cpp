#include "search/FileChanges.h"

#include "search/FileProcessor.h"
#include "files/FileText.h"
#include "search/WriteBack.h"

namespace vantorel {
namespace {

// Windows-1252 lines shown as UTF-8, their marks moved along.
void decodeLines(std::vector<ChangeHunk>& hunks) {
    for (ChangeHunk& hunk : hunks) {
        for (ChangedLine& line : hunk.lines) {
            const std::string_view bytes = line.text;
            auto decodedLength = [bytes](std::uint32_t length) {
                return static_cast<std::uint32_t>(windows1252ToUtf8(bytes.substr(0, length)).size());
            };
            for (auto& [begin, end] : line.marks) {
                begin = decodedLength(begin);
                end = decodedLength(end);
            }
            line.text = windows1252ToUtf8(line.text);
        }
    }
}

// Byte offsets in the UTF-16 form of UTF-8 text, for positions in order.
class Utf16Offsets {
public:
    Utf16Offsets(std::string_view utf8, std::size_t lead) : utf8_(utf8), bytes_(lead) {}
    std::size_t at(std::size_t position) {
        while (scanned_ < position) {
            const unsigned char c = static_cast<unsigned char>(utf8_[scanned_]);
            const std::size_t length = c < 0x80 ? 1 : c < 0xE0 ? 2 : c < 0xF0 ? 3 : 4;
            bytes_ += length == 4 ? 4 : 2;  // a surrogate pair beyond the basic plane
            scanned_ += length;
        }
        return bytes_;
    }

private:
    std::string_view utf8_;
    std::size_t scanned_ = 0;
    std::size_t bytes_;
};

}  // namespace

FileChanges previewChanges(const std::string& path, const FileText& text, const std::vector<CompiledJob>& jobs,
                           const WriteSettings& settings, ChangeLines lines) {
    FileChanges changes;
    changes.encoding = text.encoding();
    changes.utf16 = text.utf16().has_value();
    changes.modifiedNs = text.identity().modifiedNs;
    std::string fileBytes, newText;
    StringSink fileSink(fileBytes), textSink(newText);
    TextEdits edits;
    changes.matches = writeNewText(text, jobs, fileSink, &edits, changes.utf16 ? &textSink : nullptr);
    if (changes.matches == 0) return changes;
    changes.refused = writeRefusal(path, text, settings);
    if (!changes.utf16) {
        changes.hunks = changeHunks(text.bytes(), fileBytes, edits);
        if (lines == ChangeLines::Decoded && changes.encoding == TextEncoding::Windows1252) decodeLines(changes.hunks);
    } else if (lines == ChangeLines::Decoded) {
        changes.hunks = changeHunks(text.bytes(), newText, edits);
    } else {
        std::string oldBytes;
        appendUtf16(oldBytes, text.bytes(), *text.utf16());  // exact: the text round trips, or is refused
        // The writer puts the mark back when the new text lost it.
        const std::size_t lead = fileBytes.size() - Utf16Offsets(newText, 0).at(newText.size());
        Utf16Offsets oldOffsets(text.bytes(), 0), newOffsets(newText, lead);
        for (TextEdit& edit : edits)
            edit = {oldOffsets.at(edit.oldBegin), oldOffsets.at(edit.oldEnd), newOffsets.at(edit.newBegin),
                    newOffsets.at(edit.newEnd)};
        changes.hunks = changeHunks(oldBytes, fileBytes, edits);
    }
    return changes;
}

}  // namespace vantorel
