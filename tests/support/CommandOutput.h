#pragma once
// What another program prints, for the tests that check our work with it.

#include <cstdio>
#include <optional>
#include <string>

namespace vantorel::test {

// A shell command's standard output; nothing when it cannot be run or fails.
inline std::optional<std::string> commandOutput(const std::string& command) {
    std::FILE* pipe = ::popen((command + " 2>/dev/null").c_str(), "r");
    if (!pipe) return std::nullopt;
    std::string out;
    char buffer[4096];
    while (const std::size_t n = std::fread(buffer, 1, sizeof buffer, pipe)) out.append(buffer, n);
    return ::pclose(pipe) == 0 ? std::optional(out) : std::nullopt;
}

}  // namespace vantorel::test
