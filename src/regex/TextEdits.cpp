#include "regex/TextEdits.h"

#include <algorithm>
#include <cstdint>

namespace vantorel {
namespace {

std::size_t shifted(std::size_t position, std::int64_t by) {
    return static_cast<std::size_t>(static_cast<std::int64_t>(position) + by);
}

}  // namespace

TextEdits composeEdits(const TextEdits& first, const TextEdits& second) {
    if (first.empty()) return second;
    if (second.empty()) return first;
    TextEdits out;
    out.reserve(first.size() + second.size());
    std::size_t i = 0, j = 0;
    // How far the edits already placed moved the text: B from A, C from B.
    std::int64_t firstGrowth = 0, secondGrowth = 0;
    while (i < first.size() || j < second.size()) {
        // A group in B: the first edit's new range and the second's old
        // ranges that meet it, as long as they keep meeting.
        const bool startWithFirst = j == second.size() || (i < first.size() && first[i].newBegin <= second[j].oldBegin);
        const std::size_t begin = startWithFirst ? first[i].newBegin : second[j].oldBegin;
        std::size_t end = begin;
        std::int64_t groupFirst = 0, groupSecond = 0;
        while (true) {
            if (i < first.size() && first[i].newBegin <= end) {
                end = std::max(end, first[i].newEnd);
                groupFirst += first[i++].growth();
            } else if (j < second.size() && second[j].oldBegin <= end) {
                end = std::max(end, second[j].oldEnd);
                groupSecond += second[j++].growth();
            } else {
                break;
            }
        }
        out.push_back({shifted(begin, -firstGrowth), shifted(end, -firstGrowth - groupFirst),
                       shifted(begin, secondGrowth), shifted(end, secondGrowth + groupSecond)});
        firstGrowth += groupFirst;
        secondGrowth += groupSecond;
    }
    return out;
}

}  // namespace vantorel
