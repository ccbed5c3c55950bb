#pragma once
// Unicode simple case folding (CaseFolding.txt, statuses C and S): which
// characters are equal without regard to case, one character for one, in
// every script (Ș/ș, Ά/ά, Ґ/ґ, the Kelvin sign and k, 𐐀/𐐨 ...).

#include <cstdint>
#include <span>
#include <utility>
#include <vector>

namespace vantorel {

class SimpleCaseFolding {
public:
    // The process-wide index, built on first use.
    static const SimpleCaseFolding& instance();

    // The smallest character equal to `c` without regard to case: two
    // characters are equal so exactly when their keys are.
    char32_t key(char32_t c) const noexcept;
    // Every character equal to `c`, itself included, ascending; empty when
    // `c` has no other case.
    std::span<const char32_t> equivalents(char32_t c) const noexcept;

private:
    SimpleCaseFolding();

    // Generated (SimpleCaseFoldingTable.cpp): the classes of two or more
    // characters, each ascending and ended by 0.
    static const std::span<const char32_t> kClasses;
    // (member, index in kClasses of its class's first member), by member.
    std::vector<std::pair<char32_t, std::uint32_t>> index_;
};

}  // namespace vantorel
