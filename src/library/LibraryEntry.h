#pragma once
// One named expression of the library: a search pattern and its replacement,
// kept exactly as typed (escape sequences are translated only when used).

#include <string>

namespace vantorel {

struct LibraryEntry {
    std::string name;
    std::string pattern;
    std::string replacement;  // may be empty

    bool operator==(const LibraryEntry&) const = default;
};

}  // namespace vantorel
