#pragma once
// One row of the results list.

#include <cstdint>
#include <ctime>
#include <string>
#include <vector>

#include "core/RunTypes.h"

namespace vantorel {

struct ResultRow {
    std::string name;    // "File Name"
    std::string folder;  // "Path", ending with the separator
    std::uint64_t matches = 0;
    std::uint64_t size = 0;
    std::time_t modified = 0;
    bool checked = false;

    static ResultRow fromReport(const FileReport& report);
    std::string path() const { return folder + name; }
    // The texts of the five columns, as the list shows them.
    std::vector<std::string> cells() const;
};

// The column headers of the results list.
const std::vector<std::string>& resultColumnHeaders();

}  // namespace vantorel
