#include "library/RegexTester.h"

#include <new>
#include <stdexcept>

#include "core/TextEncoding.h"
#include "files/FileText.h"
#include "regex/PatternConstruction.h"
#include "regex/Regex.h"
#include "regex/ReplaceTemplate.h"

namespace vantorel {
namespace {

bool cancelled(const std::atomic<bool>* cancel) { return cancel && cancel->load(std::memory_order_relaxed); }

// Positions in a UTF-8 sample as ECMAScript's indexes count them (UTF-16
// units: a character beyond U+FFFF takes two), with a CR LF pair counted once
// as the sample's box shows it. Moving on from the last position asked for
// costs only the distance.
class Positions {
public:
    explicit Positions(std::string_view text) : text_(text) {}

    std::uint64_t at(std::size_t byte) {
        if (byte >= byte_) position_ += characters(byte_, byte);
        else position_ -= characters(byte, byte_);
        byte_ = byte;
        return position_;
    }
    SampleSpan span(std::size_t begin, std::size_t end) {
        SampleSpan s{begin, end, at(begin), 0};
        s.length = at(end) - s.position;
        return s;
    }

private:
    std::uint64_t characters(std::size_t from, std::size_t to) const {
        std::uint64_t n = 0;
        for (std::size_t i = from; i < to; ++i) {
            const auto c = static_cast<unsigned char>(text_[i]);
            if ((c & 0xC0) == 0x80 || (c == '\n' && i > 0 && text_[i - 1] == '\r')) continue;
            n += c >= 0xF0 ? 2 : 1;
        }
        return n;
    }

    std::string_view text_;
    std::size_t byte_ = 0;
    std::uint64_t position_ = 0;
};

// The replacement's pieces go into a string; a cancel stops the work.
class PreviewSink : public TextSink {
public:
    PreviewSink(std::string& out, const std::atomic<bool>* cancel) : out_(out), cancel_(cancel) {}
    void write(std::string_view piece) override {
        if (cancelled(cancel_)) throw TesterCancelled{};
        out_.append(piece);
    }

private:
    std::string& out_;
    const std::atomic<bool>* cancel_;
};

std::string matchFailure(const std::string& what) {
    return "Matching gave up on this sample (" + what +
           "): the expression tries too many ways to match. Make its repetitions more specific, such as "
           "[^,]* instead of .*, and do not repeat a group that itself repeats.";
}

}  // namespace

StyledText matchListing(const std::vector<std::string>& values, std::uint64_t count) {
    StyledText out;
    if (count < 1) return out;
    for (std::size_t i = 0; i < values.size() && i < kListedMatches; ++i) {
        out.push_back(StyledRun{std::to_string(i + 1) + ") ", kBlack, false});
        out.push_back(StyledRun{values[i] + " \r\n", kBlue, true});
        if (i + 1 == kListedMatches) {
            // Also after exactly a hundred: "... Plus 0 more."
            out.push_back(StyledRun{"... Plus " + std::to_string(count - kListedMatches) + " more. (Not shown)", kRed,
                                    false});
        }
    }
    return out;
}

MatchList listMatches(std::string_view sample, const TesterExpression& expression, const std::atomic<bool>* cancel) {
    MatchList list;
    if (expression.pattern.empty()) return list;
    const Regex regex(expression.pattern, !expression.caseSensitive);
    const CompiledPattern& compiled = regex.forEncoding(TextEncoding::Utf8);
    const std::uint32_t groups = compiled.captureCount();
    list.groupNames.assign(groups, std::string());
    for (const auto& [name, number] : compiled.groupNames())
        if (number >= 1 && number <= groups) list.groupNames[number - 1] = name;

    std::vector<std::string> values;
    Positions positions(sample);
    const auto started = std::chrono::steady_clock::now();
    compiled.forEachMatch(sample, [&](const Match& match) {
        if (cancelled(cancel)) throw TesterCancelled{};
        ++list.count;
        if (values.size() < kListedMatches) values.emplace_back(match.value());
        if (list.matches.size() < kMarkedMatches) {
            TesterMatch marked;
            marked.span = positions.span(match.begin(), match.end());
            marked.groups.reserve(groups);
            for (std::uint32_t n = 1; n <= groups; ++n) {
                const std::optional<std::string_view> group = match.group(n);
                if (!group) {
                    marked.groups.emplace_back();
                    continue;
                }
                const auto begin = static_cast<std::size_t>(group->data() - sample.data());
                marked.groups.emplace_back(positions.span(begin, begin + group->size()));
            }
            list.matches.push_back(std::move(marked));
        }
        return true;
    });
    list.elapsed = std::chrono::duration_cast<std::chrono::nanoseconds>(std::chrono::steady_clock::now() - started);
    list.countLabel = "(" + std::to_string(list.count) + ")";
    list.listing = matchListing(values, list.count);
    return list;
}

std::string previewReplacement(std::string_view sample, const TesterExpression& expression,
                               const std::atomic<bool>* cancel) {
    const Regex regex(expression.pattern, !expression.caseSensitive);
    const CompiledPattern& compiled = regex.forEncoding(TextEncoding::Utf8);
    const ReplaceTemplate replacement(TranslateReplaceEscapes(expression.replacement), compiled);
    std::string out;
    out.reserve(sample.size());
    PreviewSink sink(out, cancel);
    replaceAll(compiled, sample, replacement, sink);
    return out;
}

TesterUpdate runTester(std::string_view sample, const TesterExpression& expression, TesterSteps steps,
                       const std::atomic<bool>* cancel) {
    TesterUpdate update;
    // A failing list fails the preview the same way: it is not run again.
    try {
        if (steps.list) update.list = listMatches(sample, expression, cancel);
        if (steps.preview) update.replaced = previewReplacement(sample, expression, cancel);
    } catch (const TesterCancelled&) {
        update.cancelled = true;
    } catch (const PatternError& error) {
        update.problem = TesterProblem{error.what(), error.offset()};
    } catch (const MatchError& error) {
        update.problem = TesterProblem{matchFailure(error.what()), std::nullopt};
    } catch (const std::bad_alloc&) {
        update.problem = TesterProblem{"There is not enough memory for this expression on this sample.", std::nullopt};
    } catch (const std::exception& error) {
        update.problem = TesterProblem{error.what(), std::nullopt};
    }
    return update;
}

SampleFile readSampleFile(const std::string& path, std::uint64_t maxBytes) {
    FileText::Result read = FileText::read(path);
    switch (read.status) {
        case FileText::Status::Ok: break;
        case FileText::Status::Vanished: throw std::runtime_error("The file does not exist.");
        case FileText::Status::TooLarge: throw std::runtime_error(tooLargeMessage(path));
        case FileText::Status::Error: throw std::runtime_error(read.error);
    }
    std::string_view bytes = read.text.bytes();
    if (bytes.size() > maxBytes) {
        const std::string most = maxBytes % (1u << 20) == 0 ? std::to_string(maxBytes >> 20) + " MB"
                                                            : std::to_string(maxBytes) + " bytes";
        throw std::runtime_error(path + " is larger than " + most + ", the most the tester takes.");
    }
    const TextEncoding encoding = read.text.encoding();
    if (encoding == TextEncoding::Utf8 && bytes.starts_with("\xEF\xBB\xBF")) bytes.remove_prefix(3);
    SampleFile sample;
    const std::size_t firstBreak = bytes.find('\n');
    sample.crlf = firstBreak != std::string_view::npos && firstBreak > 0 && bytes[firstBreak - 1] == '\r';
    const std::string text = toUtf8(bytes, encoding);
    if (!sample.crlf) {
        sample.text = text;
        return sample;
    }
    sample.text.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i)
        if (!(text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n')) sample.text += text[i];
    return sample;
}

}  // namespace vantorel
