// How much the ECMAScript translation costs: counts the matches of a few
// typical patterns in a large generated text, once with the pattern handed
// to PCRE2 as it is (what a plain PCRE2 search would do: UTF, CASELESS,
// MULTILINE) and once through Regex, and prints both times with the literal
// optimisations PCRE2 found (first code unit / required code unit). The
// third time is Regex again as a run uses it, able to be stopped (the text
// searched in slices).
//
//   cmake --build BUILD --target regex_speed && BUILD/tests/regex_speed [MB]

#include <pcre2.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <string>
#include <vector>

#include "regex/Regex.h"

namespace {

using vantorel::CompiledPattern;
using vantorel::Regex;
using vantorel::TextEncoding;

// Words with a few non-ASCII letters, lines of varying length, and the
// needle "Durandal" (with a number after it) in about one line in 2000.
std::string makeText(std::size_t bytes, TextEncoding encoding) {
    static const char* const kWords[] = {
        "the", "of", "and", "to", "in", "is", "that", "for", "it", "as", "was", "with", "request",
        "response", "buffer", "socket", "handler", "config", "value", "result", "number", "café",
        "naïve", "Straße", "status", "colour", "folder", "filter", "user@example.com", "ERROR", "42"};
    std::uint64_t state = 88172645463325252ULL;
    auto next = [&state] {
        state ^= state << 13;
        state ^= state >> 7;
        state ^= state << 17;
        return state;
    };
    std::string text;
    text.reserve(bytes + 200);
    while (text.size() < bytes) {
        const std::size_t words = 3 + next() % 14;
        for (std::size_t i = 0; i < words; ++i) {
            if (i) text += ' ';
            text += kWords[next() % (sizeof kWords / sizeof *kWords)];
        }
        if (next() % 2000 == 0) text += " Durandal " + std::to_string(next() % 1000);
        text += '\n';
    }
    return encoding == TextEncoding::Utf8 ? text : *vantorel::utf8ToWindows1252(text);
}

double secondsOf(const std::function<std::uint64_t()>& run, std::uint64_t& count) {
    double best = 1e9;
    for (int i = 0; i < 3; ++i) {
        const auto start = std::chrono::steady_clock::now();
        count = run();
        const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start;
        best = std::min(best, elapsed.count());
    }
    return best;
}

struct Raw {
    pcre2_code* code = nullptr;
    explicit Raw(const std::string& pattern, std::uint32_t options) {
        int error = 0;
        PCRE2_SIZE offset = 0;
        code = pcre2_compile(reinterpret_cast<PCRE2_SPTR>(pattern.data()), pattern.size(), options, &error,
                             &offset, nullptr);
        if (!code) {
            std::fprintf(stderr, "cannot compile %s\n", pattern.c_str());
            std::exit(1);
        }
        pcre2_jit_compile(code, PCRE2_JIT_COMPLETE);
    }
    ~Raw() { pcre2_code_free(code); }
    std::uint64_t count(const std::string& text) const {
        pcre2_match_data* data = pcre2_match_data_create_from_pattern(code, nullptr);
        std::uint64_t n = 0;
        std::size_t start = 0;
        while (start <= text.size() &&
               pcre2_jit_match(code, reinterpret_cast<PCRE2_SPTR>(text.data()), text.size(), start, 0, data,
                               nullptr) > 0) {
            const PCRE2_SIZE* ov = pcre2_get_ovector_pointer(data);
            ++n;
            start = ov[1] > ov[0] ? ov[1] : ov[1] + 1;
        }
        pcre2_match_data_free(data);
        return n;
    }
    std::string hints() const {
        std::uint32_t first = 0, firstUnit = 0, last = 0, lastUnit = 0;
        pcre2_pattern_info(code, PCRE2_INFO_FIRSTCODETYPE, &first);
        if (first == 1) pcre2_pattern_info(code, PCRE2_INFO_FIRSTCODEUNIT, &firstUnit);
        pcre2_pattern_info(code, PCRE2_INFO_LASTCODETYPE, &last);
        if (last == 1) pcre2_pattern_info(code, PCRE2_INFO_LASTCODEUNIT, &lastUnit);
        char text[64];
        std::snprintf(text, sizeof text, "first %s%c required %c", first == 2 ? "line start " : "",
                      first == 1 ? static_cast<char>(firstUnit) : '-', last == 1 ? static_cast<char>(lastUnit) : '-');
        return text;
    }
};

std::string hints(const CompiledPattern& pattern) {
    const auto h = pattern.searchHints();
    char text[64];
    std::snprintf(text, sizeof text, "first %c required %c",
                  h.firstCodeType == 1 ? static_cast<char>(h.firstCodeUnit) : '-',
                  h.hasRequiredCodeUnit ? static_cast<char>(h.requiredCodeUnit) : '-');
    return text;
}

}  // namespace

int main(int argc, char** argv) {
    const std::size_t megabytes = argc > 1 ? std::strtoul(argv[1], nullptr, 10) : 200;
    struct Case {
        const char* label;
        const char* pattern;
        bool ignoreCase;
    };
    const Case cases[] = {
        {"literal", "Durandal", false},
        {"literal, ignore case", "durandal", true},
        {"literal with k/s, ignore case", "Kiss", true},
        {"escaped plain text", "user@example\\.com", false},
        {"regex with a literal part", "Durandal \\d+", false},
        {"regex, literal at the end", "\\w+@example\\.com", false},
        {"regex, ignore case", "durandal \\d+", true},
        {"line start", "^Durandal", false},
        {"dot run", "Durandal.*$", false},
        {"very many matches", "the", false},
        {"every word", "\\w+", false},
    };
    for (TextEncoding encoding : {TextEncoding::Utf8, TextEncoding::Windows1252}) {
        const std::string text = makeText(megabytes << 20, encoding);
        std::printf("%s text, %zu MB\n", encoding == TextEncoding::Utf8 ? "UTF-8" : "Windows-1252",
                    text.size() >> 20);
        std::printf("  %-30s %-22s %9s %9s %9s  %-22s %-22s\n", "case", "pattern", "PCRE2 ms", "ours ms",
                    "stoppable", "PCRE2 hints", "our hints");
        for (const Case& c : cases) {
            std::uint32_t options = PCRE2_MULTILINE | (c.ignoreCase ? PCRE2_CASELESS : 0);
            if (encoding == TextEncoding::Utf8) options |= PCRE2_UTF;
            const Raw raw(c.pattern, options);
            const Regex regex(c.pattern, c.ignoreCase);
            const CompiledPattern& ours = regex.forEncoding(encoding);
            std::uint64_t rawCount = 0, ourCount = 0, stoppableCount = 0;
            const double rawSeconds = secondsOf([&] { return raw.count(text); }, rawCount);
            const double ourSeconds = secondsOf([&] { return ours.countMatches(text); }, ourCount);
            const std::atomic<bool> never{false};
            const double stoppableSeconds = secondsOf([&] {
                const vantorel::MatchStop stoppable(never);
                return ours.countMatches(text);
            }, stoppableCount);
            std::printf("  %-30s %-22s %9.1f %9.1f %9.1f  %-22s %-22s%s\n", c.label, c.pattern, rawSeconds * 1000,
                        ourSeconds * 1000, stoppableSeconds * 1000, raw.hints().c_str(), hints(ours).c_str(),
                        rawCount == ourCount && ourCount == stoppableCount ? "" : "  (counts differ)");
        }
    }
}
