#pragma once
// A budget of bytes. A Replace keeps two: the new texts that wait on disk,
// as temporary files, for their turn to be renamed into place (running
// ahead on many threads, it holds back its next temporary file while these
// pass the budget, so that it needs little more free space than its largest
// file), and the texts that its counting pass keeps in memory for the
// writing pass, which then need not read them again.

#include <atomic>
#include <cstdint>
#include <optional>
#include <utility>

namespace vantorel {

class WriteBudget {
public:
    explicit WriteBudget(std::uint64_t limit) : limit_(limit) {}

    bool fits(std::uint64_t bytes) const noexcept { return pending_.load() + bytes <= limit_.load(); }
    // A disk that ran short of space: from now on, less waits on it.
    void setLimit(std::uint64_t limit) noexcept { limit_ = limit; }
    std::uint64_t pending() const noexcept { return pending_.load(); }
    std::uint64_t limit() const noexcept { return limit_.load(); }

    // A part of the budget, given back when the share ends.
    class Share {
    public:
        Share() = default;
        Share(WriteBudget* budget, std::uint64_t bytes) : budget_(budget), bytes_(bytes) {
            if (budget_) budget_->pending_ += bytes_;
        }
        struct Taken {};
        Share(WriteBudget* budget, std::uint64_t bytes, Taken) noexcept : budget_(budget), bytes_(bytes) {}
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

    // A share of `bytes` when they fit, nothing when they do not.
    std::optional<Share> tryShare(std::uint64_t bytes) noexcept {
        std::uint64_t pending = pending_.load();
        do {
            if (pending + bytes > limit_) return std::nullopt;
        } while (!pending_.compare_exchange_weak(pending, pending + bytes));
        return Share(this, bytes, Share::Taken{});
    }

private:
    std::atomic<std::uint64_t> limit_;
    std::atomic<std::uint64_t> pending_{0};
};

}  // namespace vantorel
