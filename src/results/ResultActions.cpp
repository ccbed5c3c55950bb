#include "results/ResultActions.h"

#include <algorithm>

#include "files/FileFunctions.h"

namespace vantorel {

std::string runCaption(std::string_view fileName) {
    return "Open " + std::string(fileName) + " with associated program";
}

std::string markCaption(std::string_view fileName, bool marked) {
    return (marked ? "Unmark " : "Mark ") + std::string(fileName);
}

std::optional<std::string> openWithCaption(std::string_view program) {
    if (program.size() < 5) return std::nullopt;
    return "Open with " + FileNameOf(program);
}

bool showsMultiMarkItems(std::size_t selectedRows) {
    return selectedRows >= 2;
}

bool anyMarked(const std::vector<bool>& marks) {
    return std::find(marks.begin(), marks.end(), true) != marks.end();
}

MarkedBoxState markedBoxAfterMarking() { return {true, true, true}; }

MarkedBoxState markedBoxFor(bool anyMarkLeft) {
    return anyMarkLeft ? MarkedBoxState{true, false, false} : MarkedBoxState{false, false, true};
}

MarkedBoxState MarkAction::toggle(std::size_t row) {
    if (!marks[row]) {
        marks[row] = true;
        return markedBoxAfterMarking();
    }
    marks[row] = false;
    return markedBoxFor(anyMarked(marks));
}

MarkedBoxState MarkAction::markSelected() {
    for (std::size_t i = 0; i < marks.size(); ++i)
        if (selected[i]) marks[i] = true;
    return markedBoxAfterMarking();
}

MarkedBoxState MarkAction::unmarkSelected() {
    for (std::size_t i = 0; i < marks.size(); ++i)
        if (selected[i]) marks[i] = false;
    return markedBoxFor(anyMarked(marks));
}

MarkedBoxState MarkAction::invert() {
    for (std::size_t i = 0; i < marks.size(); ++i) marks[i] = !marks[i];
    return markedBoxFor(anyMarked(marks));
}

}  // namespace vantorel
