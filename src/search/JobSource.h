#pragma once
// Where a run's find/replace pairs come from: the pair typed in the main
// window, or the steps of a batch queue, run one after the other.

#include <string>
#include <utility>
#include <vector>

#include "core/RunTypes.h"

namespace vantorel {

struct JobSource {
    std::vector<FindReplaceJob> jobs;
    bool batch = false;

    static JobSource typedPair(std::string findText, std::string replaceText) {
        return {{FindReplaceJob{std::move(findText), std::move(replaceText)}}, false};
    }
    static JobSource batchSteps(std::vector<FindReplaceJob> steps) { return {std::move(steps), true}; }
};

}  // namespace vantorel
