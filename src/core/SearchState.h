#pragma once
// The run state shared by the driver, the file list builder, the preview and
// the Stop button. One instance lives from start-up to exit.

#include <atomic>
#include <cstdint>
#include <string>

namespace vantorel {

struct SearchState {
    // Set by the Stop button (from any thread, or a signal handler). Whoever
    // starts a run clears it first, on its own thread, so that a stop that
    // comes before the run gets going is not lost.
    std::atomic<bool> stopRequested{false};
    // Files of the current replace pass whose replacements were not written
    // because they are read-only.
    std::atomic<std::int64_t> readOnlySkipped{0};
    // What the preview highlights: set by the driver when a run ends; empty
    // means no highlighting. Written and read on the driver's side only.
    std::string previewPattern;
};

static_assert(std::atomic<bool>::is_always_lock_free, "the Stop flag is set from a signal handler");

}  // namespace vantorel
