#pragma once
// A set of Unicode code points kept as sorted, disjoint, non-adjacent ranges.

#include <cstddef>
#include <cstdint>
#include <vector>

namespace vantorel {

class CodePointSet {
public:
    static constexpr char32_t kMaxCodePoint = 0x10FFFF;

    struct Range {
        char32_t first;
        char32_t last;
        bool operator==(const Range&) const = default;
    };

    CodePointSet() = default;
    static CodePointSet single(char32_t cp);
    static CodePointSet span(char32_t first, char32_t last);
    static CodePointSet all() { return span(0, kMaxCodePoint); }

    void add(char32_t cp) { addRange(cp, cp); }
    void addRange(char32_t first, char32_t last);
    void add(const CodePointSet& other);
    void removeRange(char32_t first, char32_t last);

    CodePointSet complement() const;
    bool contains(char32_t cp) const noexcept;
    bool empty() const noexcept { return ranges_.empty(); }
    // Number of code points in the set.
    std::uint64_t count() const noexcept;
    const std::vector<Range>& ranges() const noexcept { return ranges_; }

    bool operator==(const CodePointSet&) const = default;

private:
    std::vector<Range> ranges_;
};

}  // namespace vantorel
