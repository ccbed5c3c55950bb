#pragma once
// The bytes of new texts that wait on disk, as temporary files, for their
// turn to be renamed into place. A Replace running ahead on many threads
// holds back its next temporary file while these pass the budget, so that
// it needs little more free space than its largest file.

#include <atomic>
#include <cstdint>
#include <utility>

namespace vantorel {

class WriteBudget {
public:
    explicit WriteBudget(std::uint64_t limit) : limit_(limit) {}

    bool fits(std::uint64_t bytes) const noexcept { return pending_.load() + bytes <= limit_; }
    std::uint64_t pending() const noexcept { return pending_.load(); }

    // A part of the budget, given back when the share ends.
    class Share {
    public:
        Share() = default;
        Share(WriteBudget* budget, std::uint64_t bytes) : budget_(budget), bytes_(bytes) {
            if (budget_) budget_->pending_ += bytes_;
        }
        Share(Share&& other) noexcept
            : budget_(std::exchange(other.budget_, nullptr)), bytes_(other.bytes_) {}
        Share& operator=(Share&& other) noexcept {
            if (this != &other) {
                release();
                budget_ = std::exchange(other.budget_, nullptr);
                bytes_ = other.bytes_;
            }
            return *this;
        }
        ~Share() { release(); }

        // The size once known (a new text may be longer or shorter than the old).
        void resize(std::uint64_t bytes) noexcept {
            if (budget_) budget_->pending_ += bytes - bytes_;  // wraps correctly when smaller
            bytes_ = bytes;
        }
        void release() noexcept {
            if (budget_) budget_->pending_ -= bytes_;
            budget_ = nullptr;
        }

    private:
        WriteBudget* budget_ = nullptr;
        std::uint64_t bytes_ = 0;
    };

private:
    const std::uint64_t limit_;
    std::atomic<std::uint64_t> pending_{0};
};

}  // namespace vantorel
