#include "library/ExpressionLibrary.h"

#include <exception>

#include "core/MessageHost.h"
#include "core/TextEncoding.h"
#include "library/SavedWorkLoad.h"
#include "regex/EcmaCaseFolding.h"

namespace vantorel {

bool sameNameIgnoringCase(const std::string& a, const std::string& b) {
    const EcmaCaseFolding& folding = EcmaCaseFolding::instance();
    std::size_t i = 0, j = 0;
    while (i < a.size() && j < b.size())
        if (folding.canonicalize(decodeUtf8(a, i)) != folding.canonicalize(decodeUtf8(b, j))) return false;
    return i == a.size() && j == b.size();
}

namespace {

bool blankName(const std::string& name) { return name.find_first_not_of(' ') == std::string::npos; }

}  // namespace

ExpressionLibrary::ExpressionLibrary(LibraryFile file, MessageHost& messages, LibraryState& state)
    : file_(std::move(file)), messages_(messages), state_(state) {}

void ExpressionLibrary::say(const std::string& text, bool failure) {
    messages_.showMessage(Message{text, kProgramTitle, MessageIcon::None,
                                  failure ? MessageKind::FileError : MessageKind::Validation});
}

void ExpressionLibrary::load() {
    entries_ = loadLibrary(file_, messages_).value_or(std::vector<LibraryEntry>());
}

ExpressionLibrary::SaveResult ExpressionLibrary::save(const LibraryEntry& typed, std::size_t* index) {
    if (typed.pattern.empty()) {
        say("Please enter a Regular Expression to save");
        return SaveResult::Refused;
    }
    if (blankName(typed.name)) {
        say("Please enter a name for the Regular Expression");
        return SaveResult::Refused;
    }
    if (!fitsOnOneLine(typed)) {
        say("The name, the expression and the replacement cannot hold tabs or line breaks.");
        return SaveResult::Refused;
    }
    for (std::size_t i = 0; i < entries_.size(); ++i) {
        if (!sameNameIgnoringCase(typed.name, entries_[i].name)) continue;
        // Only the first entry of that name is offered.
        if (!messages_.askYesNo(Message{"This already exists. Update '" + typed.name + "' ?", kProgramTitle,
                                        MessageIcon::Question}))
            return SaveResult::Declined;
        if (!update(i, typed)) return SaveResult::Failed;
        if (index) *index = i;
        return SaveResult::Updated;
    }
    try {
        file_.append(typed);
    } catch (const std::exception&) {
        say("Error saving file", true);
        return SaveResult::Failed;
    }
    load();
    state_.changed = true;
    if (index) *index = entries_.empty() ? 0 : entries_.size() - 1;
    messages_.showMessage(Message{typed.name + " saved.", kProgramTitle, MessageIcon::Information});
    return SaveResult::Saved;
}

bool ExpressionLibrary::update(std::size_t index, const LibraryEntry& typed) {
    if (index >= entries_.size()) return false;
    std::vector<LibraryEntry> records = entries_;
    records[index] = typed;
    try {
        file_.rewrite(records);
    } catch (const std::exception& error) {
        say(std::string("Error updating entry in library: ") + error.what(), true);
        return false;
    }
    load();
    state_.changed = true;
    return true;
}

bool ExpressionLibrary::remove(std::size_t index) {
    if (index >= entries_.size()) return false;
    if (!messages_.askYesNo(Message{"Remove '" + entries_[index].name + "' from library?", kProgramTitle,
                                    MessageIcon::Question}))
        return false;
    std::vector<LibraryEntry> records = entries_;
    records.erase(records.begin() + static_cast<std::ptrdiff_t>(index));
    try {
        file_.rewrite(records);
    } catch (const std::exception& error) {
        say(std::string("Error deleting entry from library: ") + error.what(), true);
        return false;
    }
    // A removal leaves the batch window's list as it is.
    load();
    return true;
}

void ExpressionLibrary::choose(std::size_t index) {
    if (index < entries_.size()) choose(entries_[index].pattern, entries_[index].replacement);
}

void ExpressionLibrary::choose(const std::string& pattern, const std::string& replacement) {
    state_.choice.pattern = pattern;
    state_.choice.replacement = replacement;
}

}  // namespace vantorel
