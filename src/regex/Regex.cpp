#include "regex/Regex.h"

#include <pcre2.h>

#include <time.h>

#include <algorithm>

#include "regex/EcmaPatternParser.h"
#include "regex/PatternTranslator.h"
#include "regex/Windows1252CharacterTables.h"

namespace vantorel {
namespace {

// The translation relies on ALT_BSUX (\uHHHH, \xHH) and MATCH_UNSET_BACKREF
// (a reference to a group that did not take part matches the empty string);
// the others guard against constructs that it never writes.
// USE_OFFSET_LIMIT lets a search be cut into slices that can be stopped.
constexpr std::uint32_t kBaseOptions = PCRE2_ALT_BSUX | PCRE2_MATCH_UNSET_BACKREF |
                                       PCRE2_ALLOW_EMPTY_CLASS | PCRE2_DOLLAR_ENDONLY |
                                       PCRE2_NEVER_BACKSLASH_C | PCRE2_USE_OFFSET_LIMIT;

thread_local const std::atomic<bool>* tStop = nullptr;

// A slice of the text where matches may start: small at first, then sized
// so that one slice takes between kShortSlice and kLongSlice.
constexpr std::size_t kFirstSlice = 256;
constexpr std::size_t kLargestSlice = std::size_t{1} << 30;
constexpr std::int64_t kShortSliceNs = 10'000'000;
constexpr std::int64_t kLongSliceNs = 40'000'000;

// A clock that costs next to nothing to read, precise to a few milliseconds.
std::int64_t coarseNowNs() noexcept {
    timespec now{};
    ::clock_gettime(CLOCK_MONOTONIC_COARSE, &now);
    return static_cast<std::int64_t>(now.tv_sec) * 1'000'000'000 + now.tv_nsec;
}

std::string pcre2Message(int code) {
    PCRE2_UCHAR buffer[256];
    if (pcre2_get_error_message(code, buffer, sizeof buffer) < 0) return "regular expression error";
    return reinterpret_cast<const char*>(buffer);
}

// Matching state of one thread: a JIT stack that may grow large enough for
// long lines, and the match context that hands it to PCRE2.
struct ThreadMatchContext {
    pcre2_match_context* context = nullptr;
    pcre2_jit_stack* stack = nullptr;
    ThreadMatchContext() {
        context = pcre2_match_context_create(nullptr);
        stack = pcre2_jit_stack_create(32 * 1024, 64 * 1024 * 1024, nullptr);
        if (context && stack) pcre2_jit_stack_assign(context, nullptr, stack);
    }
    ~ThreadMatchContext() {
        pcre2_jit_stack_free(stack);
        pcre2_match_context_free(context);
    }
};

pcre2_match_context* threadMatchContext() {
    thread_local ThreadMatchContext state;
    return state.context;
}

struct CompileContextDeleter {
    void operator()(pcre2_compile_context* context) const { pcre2_compile_context_free(context); }
};

// PCRE2 built with 2-byte links (as Debian builds it) refuses a compiled
// pattern above 64 KiB: a plain text of about 32,000 ASCII characters.
std::string tooLargeMessage() {
    std::uint32_t linkSize = 0;
    pcre2_config(PCRE2_CONFIG_LINKSIZE, &linkSize);
    if (linkSize != 2) return "The text to find is too long for the regular expression engine";
    return "The text to find is too long: the regular expression engine holds at most 64 KiB of compiled "
           "pattern (about 32,000 characters of plain text)";
}

// ECMAScript accepts every pattern that reaches PCRE2; what PCRE2 still
// refuses is a limit of PCRE2, said in words a user can act on.
std::string compileErrorMessage(int code) {
    switch (code) {
        case PCRE2_ERROR_LOOKBEHIND_NOT_FIXED_LENGTH:
            return "Each alternative of a look-behind must match a fixed number of characters here "
                   "(no *, +, ?, {n,m} or back-reference inside (?<=...) or (?<!...))";
        case PCRE2_ERROR_LOOKBEHIND_TOO_COMPLICATED:
        case PCRE2_ERROR_LOOKBEHIND_TOO_LONG:
            return "This look-behind is too complicated or too long";
        case PCRE2_ERROR_PATTERN_TOO_LARGE:
            return tooLargeMessage();
        case PCRE2_ERROR_PATTERN_TOO_COMPLICATED:
        case PCRE2_ERROR_TOO_MANY_CAPTURES:
        case PCRE2_ERROR_PARENTHESES_NEST_TOO_DEEP:
        case PCRE2_ERROR_HEAP_FAILED:
            return "The regular expression is too large or too complicated (" + pcre2Message(code) + ")";
        default:
            return "The regular expression cannot be used: " + pcre2Message(code);
    }
}

struct MatchDataDeleter {
    void operator()(pcre2_match_data* data) const { pcre2_match_data_free(data); }
};

}  // namespace

MatchStop::MatchStop(const std::atomic<bool>& stop) noexcept : previous_(tStop) { tStop = &stop; }

MatchStop::~MatchStop() { tStop = previous_; }

struct CompiledPattern::Code {
    pcre2_code* code = nullptr;
    bool jit = false;
    ~Code() { pcre2_code_free(code); }
};

std::optional<std::string_view> Match::group(std::uint32_t n) const noexcept {
    if (n >= pairs_ || ovector_[2 * n] == PCRE2_UNSET) return std::nullopt;
    return subject_.substr(ovector_[2 * n], ovector_[2 * n + 1] - ovector_[2 * n]);
}

CompiledPattern::CompiledPattern(std::string_view ecmaPattern, TextEncoding encoding,
                                 bool ignoreCase)
    : code_(std::make_unique<Code>()), encoding_(encoding) {
    const TranslatedPattern translated = translateEcmaPattern(ecmaPattern, encoding, ignoreCase);
    if (ignoreCase) {
        // Only where case matters: PCRE2 finds other literals as fast as anything.
        auto literal = AsciiLiteralFinder::literalOf(ecmaPattern);
        if (literal && std::any_of(literal->begin(), literal->end(), [](char c) {
                return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
            }))
            literal_.emplace(std::move(*literal));
    }
    pcre2Pattern_ = translated.pcre2Pattern;
    std::uint32_t options = kBaseOptions | translated.extraCompileOptions;
    if (encoding == TextEncoding::Utf8) options |= PCRE2_UTF | PCRE2_NO_UTF_CHECK;
    std::unique_ptr<pcre2_compile_context, CompileContextDeleter> context(
        pcre2_compile_context_create(nullptr));
    if (!context) throw PatternError("Out of memory while compiling the regular expression", 0);
    // The translation adds a level of parentheses here and there.
    pcre2_set_parens_nest_limit(context.get(), 4 * EcmaPatternParser::kMaxNesting);
    if (encoding == TextEncoding::Windows1252)
        if (const std::uint8_t* tables = Windows1252CharacterTables::pcre2Tables())
            pcre2_set_character_tables(context.get(), tables);
    int errorCode = 0;
    PCRE2_SIZE errorOffset = 0;
    code_->code = pcre2_compile(reinterpret_cast<PCRE2_SPTR>(pcre2Pattern_.data()), pcre2Pattern_.size(),
                                options, &errorCode, &errorOffset, context.get());
    if (!code_->code)
        throw PatternError(compileErrorMessage(errorCode), errorCode == PCRE2_ERROR_PATTERN_TOO_LARGE
                                                               ? PatternError::kNoPlace
                                                               : translated.typedOffset(errorOffset));
    code_->jit = pcre2_jit_compile(code_->code, PCRE2_JIT_COMPLETE) == 0;
    pcre2_pattern_info(code_->code, PCRE2_INFO_CAPTURECOUNT, &captureCount_);

    std::uint32_t nameCount = 0, entrySize = 0;
    PCRE2_SPTR table = nullptr;
    pcre2_pattern_info(code_->code, PCRE2_INFO_NAMECOUNT, &nameCount);
    pcre2_pattern_info(code_->code, PCRE2_INFO_NAMEENTRYSIZE, &entrySize);
    pcre2_pattern_info(code_->code, PCRE2_INFO_NAMETABLE, &table);
    for (std::uint32_t i = 0; i < nameCount; ++i) {
        const PCRE2_SPTR entry = table + i * entrySize;
        const std::uint32_t number = (entry[0] << 8) | entry[1];
        std::string name(reinterpret_cast<const char*>(entry + 2));
        for (const auto& [internal, typed] : translated.renamedGroups)
            if (internal == name) name = typed;
        groupNames_.emplace_back(std::move(name), number);
    }
}

CompiledPattern::~CompiledPattern() = default;

CompiledPattern::SearchHints CompiledPattern::searchHints() const {
    SearchHints hints;
    pcre2_pattern_info(code_->code, PCRE2_INFO_FIRSTCODETYPE, &hints.firstCodeType);
    if (hints.firstCodeType == 1) pcre2_pattern_info(code_->code, PCRE2_INFO_FIRSTCODEUNIT, &hints.firstCodeUnit);
    std::uint32_t lastType = 0;
    pcre2_pattern_info(code_->code, PCRE2_INFO_LASTCODETYPE, &lastType);
    hints.hasRequiredCodeUnit = lastType == 1;
    if (hints.hasRequiredCodeUnit) pcre2_pattern_info(code_->code, PCRE2_INFO_LASTCODEUNIT, &hints.requiredCodeUnit);
    const std::uint8_t* bitmap = nullptr;
    pcre2_pattern_info(code_->code, PCRE2_INFO_FIRSTBITMAP, &bitmap);
    hints.hasStartBitmap = bitmap != nullptr;
    pcre2_pattern_info(code_->code, PCRE2_INFO_MINLENGTH, &hints.minLength);
    return hints;
}

std::uint32_t CompiledPattern::groupNumber(std::string_view name) const noexcept {
    for (const auto& [groupName, number] : groupNames_)
        if (groupName == name) return number;
    return 0;
}

template <class OnMatch>
void CompiledPattern::run(std::string_view subject, OnMatch&& onMatch) const {
    if (literal_) {
        // Never empty, so each search goes on where the last match ended.
        std::size_t ovector[2];
        for (std::size_t at = literal_->find(subject, 0); at != std::string_view::npos;
             at = literal_->find(subject, at + literal_->length())) {
            ovector[0] = at;
            ovector[1] = at + literal_->length();
            if (!onMatch(Match(subject, ovector, 1))) return;
        }
        return;
    }
    std::unique_ptr<pcre2_match_data, MatchDataDeleter> data(
        pcre2_match_data_create_from_pattern(code_->code, nullptr));
    if (!data) throw MatchError("out of memory for match data");
    pcre2_match_context* context = threadMatchContext();
    const auto* text = reinterpret_cast<PCRE2_SPTR>(subject.data());
    const std::size_t length = subject.size();
    const std::uint32_t options = encoding_ == TextEncoding::Utf8 ? PCRE2_NO_UTF_CHECK : 0;
    const bool utf8 = encoding_ == TextEncoding::Utf8;
    auto nextCharacter = [&](std::size_t at) {
        if (utf8)
            while (at < length && (static_cast<unsigned char>(subject[at]) & 0xC0) == 0x80) ++at;
        return at;
    };
    // Without a stop flag the whole text is one slice.
    const std::atomic<bool>* stop = tStop;
    std::size_t slice = kFirstSlice;
    std::size_t sliceEnd = length;
    std::int64_t sliceStarted = 0;
    auto beginSlice = [&](std::size_t from) {
        if (stop->load(std::memory_order_relaxed)) throw MatchStopped();
        sliceEnd = length - from > slice ? from + slice : length;
        sliceStarted = coarseNowNs();
    };
    std::size_t start = 0;
    if (stop) beginSlice(start);
    while (start <= length) {
        // Set each time: a search run from a callback shares the context.
        pcre2_set_offset_limit(context, sliceEnd == length ? PCRE2_UNSET : sliceEnd);
        const int rc = code_->jit
                           ? pcre2_jit_match(code_->code, text, length, start, options, data.get(), context)
                           : pcre2_match(code_->code, text, length, start, options, data.get(), context);
        if (rc == PCRE2_ERROR_NOMATCH) {
            if (sliceEnd == length) return;
            // Nothing more starts in this slice: size the next one by this one's time.
            const std::int64_t took = coarseNowNs() - sliceStarted;
            if (took < kShortSliceNs) slice = std::min(slice * 2, kLargestSlice);
            else if (took > kLongSliceNs) slice = std::max<std::size_t>(slice / 4, 1);
            start = nextCharacter(std::max(start, sliceEnd + 1));
            beginSlice(start);
            continue;
        }
        if (rc < 0) throw MatchError(pcre2Message(rc));
        const PCRE2_SIZE* ovector = pcre2_get_ovector_pointer(data.get());
        const std::size_t begin = ovector[0];
        std::size_t end = ovector[1];
        // Only \K in a look-around could end a match before its start; the
        // translation never writes one, but stay safe.
        if (end < begin) end = begin;
        if (!onMatch(Match(subject, ovector, pcre2_get_ovector_count(data.get())))) return;
        // After an empty match, search again one character further on.
        start = end > begin ? end : nextCharacter(end + 1);
    }
}

void CompiledPattern::forEachMatch(std::string_view subject,
                                   const std::function<bool(const Match&)>& onMatch) const {
    run(subject, onMatch);
}

std::uint64_t CompiledPattern::countMatches(std::string_view subject) const {
    std::uint64_t count = 0;
    run(subject, [&count](const Match&) {
        ++count;
        return true;
    });
    return count;
}

Regex::Regex(std::string_view ecmaPattern, bool ignoreCase)
    : pattern_(ecmaPattern), ignoreCase_(ignoreCase) {
    utf8_ = std::make_shared<CompiledPattern>(ecmaPattern, TextEncoding::Utf8, ignoreCase);
    // A character that Windows-1252 lacks becomes one that never matches
    // there, so the single-byte form compiles whenever the UTF-8 one does.
    singleByte_ = std::make_shared<CompiledPattern>(ecmaPattern, TextEncoding::Windows1252, ignoreCase);
}

}  // namespace vantorel
