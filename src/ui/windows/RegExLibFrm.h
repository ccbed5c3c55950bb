#pragma once
// The expression library window: the names of the stored expressions in file
// order, the name, pattern and replacement of the one chosen, and the buttons
// to use, save, close and remove. It is shown modally by the window that
// opens it, which gets the chosen pair back through LibraryChoice.

#include <QDialog>
#include <filesystem>
#include <memory>
#include <optional>

#include "library/ExpressionLibrary.h"
#include "library/LibraryState.h"

class QAbstractButton;
class QLineEdit;
class QListWidget;

namespace vantorel {
class MessageHost;
}

namespace vantorel::ui {

class GuiMessageHost;

class RegExLibFrm : public QDialog {
    Q_OBJECT
public:
    // `programFolder`: where the program's data files are looked for.
    // `messages`: where messages and questions go; null for the window's own
    // message boxes.
    RegExLibFrm(LibraryState& state, const std::filesystem::path& programFolder, MessageHost* messages = nullptr,
                QWidget* parent = nullptr);
    ~RegExLibFrm() override;

    // The opener's find and replace texts.
    void setTexts(const QString& pattern, const QString& replacement);
    const ExpressionLibrary& library() const noexcept { return *library_; }

private:
    // The list from the library as it was last read, one name per entry.
    void fillList(std::optional<std::size_t> select = std::nullopt);
    std::optional<std::size_t> selectedIndex() const;
    LibraryEntry typed() const;
    void showEntry();
    void useEntry();
    void useTyped();
    void save();
    void removeEntry();

    std::unique_ptr<GuiMessageHost> ownMessages_;
    std::unique_ptr<ExpressionLibrary> library_;
    QLineEdit* name_ = nullptr;
    QLineEdit* pattern_ = nullptr;
    QLineEdit* replacement_ = nullptr;
    QListWidget* list_ = nullptr;
    bool reloading_ = false;
};

// Opens the library from another window: its find and replace texts go into
// the library's boxes, the choice is emptied, and the library is shown
// modally. Returns the chosen pair when its pattern is not empty (the
// replacement counts even when empty); nothing means the opener keeps its
// texts.
std::optional<LibraryChoice> openLibrary(QWidget* opener, LibraryState& state,
                                         const std::filesystem::path& programFolder, MessageHost* messages,
                                         const QString& findText, const QString& replaceText);

}  // namespace vantorel::ui
