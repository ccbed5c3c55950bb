#pragma once
// A batch job: a name and the names of library entries, run one after the
// other as find and replace steps. The entries are looked up in the library
// when the job is used.

#include <string>
#include <vector>

namespace vantorel {

struct BatchJob {
    std::string name;
    std::vector<std::string> entries;

    bool operator==(const BatchJob&) const = default;
};

}  // namespace vantorel
