#pragma once
// The rules of the results list's context menu: its captions, which items
// show, and what marking, unmarking and inverting do to the marks and to the
// "In Marked Files Only" box.

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vantorel {

// "Open " + name + " with associated program"
std::string runCaption(std::string_view fileName);
// "Unmark " + name when the row is marked, else "Mark " + name.
std::string markCaption(std::string_view fileName, bool marked);
// "Open with " + the program's file name; nothing (the item is hidden) when
// the remembered program's path is shorter than 5 characters.
std::optional<std::string> openWithCaption(std::string_view program);
// "Mark all selected" and "Unmark all selected" show only for 2 or more
// selected rows.
bool showsMultiMarkItems(std::size_t selectedRows);

// What the "In Marked Files Only" box becomes after a marking action.
struct MarkedBoxState {
    bool enabled;
    bool checked;  // only meaningful when `touchChecked`
    bool touchChecked;
};

// A mark was set: the box is enabled and ticked.
MarkedBoxState markedBoxAfterMarking();
// Marks were removed (or the list was rebuilt): with no mark left the box is
// cleared and disabled, which frees the inputs it locked; otherwise it is
// enabled and keeps its tick.
MarkedBoxState markedBoxFor(bool anyMarkLeft);

// The marks of the rows and which rows are selected, in list order.
struct MarkAction {
    std::vector<bool>& marks;
    const std::vector<bool>& selected;

    // The row's own item: marks an unmarked row, unmarks a marked one.
    MarkedBoxState toggle(std::size_t row);
    MarkedBoxState markSelected();
    MarkedBoxState unmarkSelected();
    MarkedBoxState invert();
};

bool anyMarked(const std::vector<bool>& marks);

}  // namespace vantorel
