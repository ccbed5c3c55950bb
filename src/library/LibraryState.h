#pragma once
// What the library window shares with the windows around it, one instance
// for the whole program, owned by the main window and lent to the others.

#include <string>

namespace vantorel {

// The pair the library window hands back to the window that opened it. The
// opener empties it before showing the library; an empty pattern means that
// nothing was chosen.
struct LibraryChoice {
    std::string pattern;
    std::string replacement;

    void clear() {
        pattern.clear();
        replacement.clear();
    }
};

struct LibraryState {
    LibraryChoice choice;
    // True when the library file has gained or changed an entry since the
    // batch window last read it (a removal does not count). True at start-up,
    // so that the batch window reads the library when it first opens.
    bool changed = true;
};

}  // namespace vantorel
