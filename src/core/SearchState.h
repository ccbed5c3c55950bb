#pragma once
// The Stop flag shared by the driver, the file list builder, the preview and
// the Stop button. One instance lives from start-up to exit. What a run
// leaves behind comes back in its RunOutcome.

#include <atomic>

namespace vantorel {

struct SearchState {
    // Set by the Stop button (from any thread, or a signal handler). Whoever
    // starts a run clears it first, on its own thread, so that a stop that
    // comes before the run gets going is not lost.
    std::atomic<bool> stopRequested{false};
};

static_assert(std::atomic<bool>::is_always_lock_free, "the Stop flag is set from a signal handler");

}  // namespace vantorel
