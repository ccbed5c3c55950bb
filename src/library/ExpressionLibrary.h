#pragma once
// The expression library as its window works with it: the entries in file
// order (the window's list is index-aligned with them), and saving, updating
// and removing an entry with the questions and messages that go with each.

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "library/LibraryEntry.h"
#include "library/LibraryFile.h"
#include "library/LibraryState.h"

namespace vantorel {

class MessageHost;

class ExpressionLibrary {
public:
    ExpressionLibrary(LibraryFile file, MessageHost& messages, LibraryState& state);

    const std::vector<LibraryEntry>& entries() const noexcept { return entries_; }
    const LibraryFile& file() const noexcept { return file_; }

    // Reads the file again. A missing file gives no entries; a file that
    // cannot be read says "Error loading regular expression library.".
    void load();

    enum class SaveResult {
        Refused,   // no pattern, no name, or a field that does not fit on a line
        Saved,     // appended as a new entry
        Updated,   // an entry of the same name (without regard to case) was rewritten
        Declined,  // the user did not want that entry updated
        Failed     // the file could not be written
    };
    // The save button, with the window's three texts as typed. `index` (when
    // given) receives the position of the saved or updated entry.
    SaveResult save(const LibraryEntry& typed, std::size_t* index = nullptr);
    // Rewrites the file with `typed` in place of the entry at `index`.
    bool update(std::size_t index, const LibraryEntry& typed);
    // Asks, then rewrites the file without the entry at `index`.
    bool remove(std::size_t index);

    // The hand-over to the window that opened the library: the stored pair
    // of an entry, or the texts as typed.
    void choose(std::size_t index);
    void choose(const std::string& pattern, const std::string& replacement);

private:
    void say(const std::string& text, bool failure = false);

    LibraryFile file_;
    MessageHost& messages_;
    LibraryState& state_;
    std::vector<LibraryEntry> entries_;
};

// True when two names are equal without regard to case.
bool sameNameIgnoringCase(const std::string& a, const std::string& b);

}  // namespace vantorel
