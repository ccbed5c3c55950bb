#include "results/RtfReader.h"

#include <cctype>
#include <stdexcept>
#include <string>
#include <vector>

#include "core/TextEncoding.h"

namespace vantorel {
namespace {

struct GroupState {
    bool bold = false;
    int colour = 0;       // index into the colour table
    bool skip = false;    // inside a destination that is not shown
    bool colourTable = false;
    int unicodeSkip = 1;  // \ucN: fallback characters after \uN
};

class Parser {
public:
    explicit Parser(std::string_view rtf) : rtf_(rtf) {}

    StyledText run() {
        std::size_t start = 0;
        while (start < rtf_.size() && std::isspace(static_cast<unsigned char>(rtf_[start]))) ++start;
        if (rtf_.substr(start, 5) != "{\\rtf") throw std::invalid_argument("not RTF");
        pos_ = start;
        while (pos_ < rtf_.size()) {
            const char c = rtf_[pos_];
            if (c == '{') {
                ++pos_;
                stack_.push_back(state_);
                if (stack_.size() > 1000) throw std::invalid_argument("RTF nested too deeply");
            } else if (c == '}') {
                ++pos_;
                if (stack_.empty()) throw std::invalid_argument("unbalanced RTF groups");
                state_ = stack_.back();
                stack_.pop_back();
                if (stack_.empty()) break;  // the end of the document
            } else if (c == '\\') {
                control();
            } else if (c == '\r' || c == '\n') {
                ++pos_;
            } else {
                ++pos_;
                character(static_cast<unsigned char>(c));
            }
        }
        if (!stack_.empty()) throw std::invalid_argument("unbalanced RTF groups");
        return std::move(out_);
    }

private:
    void control() {
        ++pos_;  // the backslash
        if (pos_ >= rtf_.size()) return;
        const char c = rtf_[pos_];
        if (!std::isalpha(static_cast<unsigned char>(c))) {
            ++pos_;
            switch (c) {
                case '\'': hexCharacter(); break;
                case '*': state_.skip = true; break;
                case '~': text("\xC2\xA0"); break;
                case '_': text("-"); break;
                case '\r': case '\n': text("\r\n"); break;
                case '-': break;  // optional hyphen
                default: character(static_cast<unsigned char>(c)); break;  // \\ \{ \}
            }
            return;
        }
        std::string word;
        while (pos_ < rtf_.size() && std::isalpha(static_cast<unsigned char>(rtf_[pos_]))) word += rtf_[pos_++];
        bool hasValue = false;
        long value = 0;
        bool negative = false;
        if (pos_ < rtf_.size() && rtf_[pos_] == '-') {
            negative = true;
            ++pos_;
        }
        while (pos_ < rtf_.size() && std::isdigit(static_cast<unsigned char>(rtf_[pos_]))) {
            hasValue = true;
            value = value * 10 + (rtf_[pos_++] - '0');
            if (value > 1000000000) value = 1000000000;
        }
        if (negative) value = -value;
        if (pos_ < rtf_.size() && rtf_[pos_] == ' ') ++pos_;  // the delimiter
        word_(word, hasValue, value);
    }

    void word_(const std::string& word, bool hasValue, long value) {
        if (word == "fonttbl" || word == "stylesheet" || word == "info" || word == "pict" ||
            word == "header" || word == "footer" || word == "object" || word == "listtable" ||
            word == "listoverridetable" || word == "generator") {
            state_.skip = true;
        } else if (word == "colortbl") {
            state_.skip = true;
            state_.colourTable = true;
            colours_.clear();
            pending_ = 0;
        } else if (state_.colourTable) {
            if (word == "red") pending_ = (pending_ & ~0xFFu) | static_cast<std::uint32_t>(value & 0xFF);
            if (word == "green") pending_ = (pending_ & ~0xFF00u) | (static_cast<std::uint32_t>(value & 0xFF) << 8);
            if (word == "blue") pending_ = (pending_ & ~0xFF0000u) | (static_cast<std::uint32_t>(value & 0xFF) << 16);
        } else if (word == "b") {
            state_.bold = !hasValue || value != 0;
        } else if (word == "cf") {
            state_.colour = static_cast<int>(value);
        } else if (word == "plain") {
            state_.bold = false;
            state_.colour = 0;
        } else if (word == "par" || word == "line") {
            text("\r\n");
        } else if (word == "tab") {
            text("\t");
        } else if (word == "uc") {
            state_.unicodeSkip = static_cast<int>(value);
        } else if (word == "u") {
            long cp = value < 0 ? value + 65536 : value;
            std::string utf8;
            appendUtf8(utf8, static_cast<char32_t>(cp));
            text(utf8);
            skipFallback();
        } else if (word == "emdash") {
            text("\xE2\x80\x94");
        } else if (word == "endash") {
            text("\xE2\x80\x93");
        } else if (word == "bullet") {
            text("\xE2\x80\xA2");
        }
    }

    void skipFallback() {
        for (int i = 0; i < state_.unicodeSkip && pos_ < rtf_.size(); ++i) {
            if (rtf_[pos_] == '\\' && pos_ + 1 < rtf_.size() && rtf_[pos_ + 1] == '\'') pos_ += 4;
            else if (rtf_[pos_] == '{' || rtf_[pos_] == '}' || rtf_[pos_] == '\\') break;
            else ++pos_;
        }
    }

    void hexCharacter() {
        if (pos_ + 2 > rtf_.size()) return;
        const std::string hex(rtf_.substr(pos_, 2));
        pos_ += 2;
        char* end = nullptr;
        const long byte = std::strtol(hex.c_str(), &end, 16);
        if (end != hex.c_str() + 2) return;
        character(static_cast<unsigned char>(byte));
    }

    // One character of the document in Windows-1252.
    void character(unsigned char c) {
        if (state_.colourTable) {
            if (c == ';') {
                colours_.push_back(pending_);
                pending_ = 0;
            }
            return;
        }
        std::string utf8;
        appendUtf8(utf8, windows1252ToCodePoint(c));
        text(utf8);
    }

    void text(const std::string& piece) {
        if (state_.skip || piece.empty()) return;
        std::uint32_t colour = kBlack;
        // Index 0 of a table whose first entry is empty is the automatic colour.
        if (state_.colour > 0 && static_cast<std::size_t>(state_.colour) < colours_.size())
            colour = colours_[static_cast<std::size_t>(state_.colour)];
        else if (state_.colour == 0 && !colours_.empty())
            colour = colours_[0];
        if (!out_.empty() && out_.back().colour == colour && out_.back().bold == state_.bold)
            out_.back().text += piece;
        else
            out_.push_back(StyledRun{piece, colour, state_.bold});
    }

    std::string_view rtf_;
    std::size_t pos_ = 0;
    GroupState state_;
    std::vector<GroupState> stack_;
    std::vector<std::uint32_t> colours_;
    std::uint32_t pending_ = 0;
    StyledText out_;
};

}  // namespace

StyledText RtfReader::read(std::string_view rtf) { return Parser(rtf).run(); }

}  // namespace vantorel
