#include "settings/RegistryFile.h"

#include <cstdint>
#include <vector>

namespace vantorel {
namespace {

constexpr std::size_t kWrapColumn = 77;

// ---------------------------------------------------------------- writing

bool isPlainUtf8Text(std::string_view text) {
    const auto* p = reinterpret_cast<const unsigned char*>(text.data());
    const std::size_t n = text.size();
    for (std::size_t i = 0; i < n;) {
        const unsigned char c = p[i];
        if (c < 0x80) {
            if ((c < 0x20 && c != '\t') || c == 0x7F) return false;
            ++i;
            continue;
        }
        std::size_t len;
        std::uint32_t cp;
        if (c >= 0xC2 && c <= 0xDF) {
            len = 2;
            cp = c & 0x1F;
        } else if (c >= 0xE0 && c <= 0xEF) {
            len = 3;
            cp = c & 0x0F;
        } else if (c >= 0xF0 && c <= 0xF4) {
            len = 4;
            cp = c & 0x07;
        } else {
            return false;
        }
        if (i + len > n) return false;
        for (std::size_t k = 1; k < len; ++k) {
            if ((p[i + k] & 0xC0) != 0x80) return false;
            cp = (cp << 6) | (p[i + k] & 0x3F);
        }
        if ((len == 3 && (cp < 0x800 || (cp >= 0xD800 && cp <= 0xDFFF))) || (len == 4 && (cp < 0x10000 || cp > 0x10FFFF)))
            return false;
        // C1 controls have no business in a line of text either.
        if (cp >= 0x80 && cp <= 0x9F) return false;
        i += len;
    }
    return true;
}

void appendQuoted(std::string& out, std::string_view text) {
    out += '"';
    for (const char c : text) {
        if (c == '\\' || c == '"') out += '\\';
        out += c;
    }
    out += '"';
}

void appendHexList(std::string& out, std::string_view data, std::size_t column) {
    static constexpr char kDigits[] = "0123456789abcdef";
    for (std::size_t i = 0; i < data.size(); ++i) {
        const std::size_t width = (i + 1 < data.size()) ? 3 : 2;
        if (column + width > kWrapColumn && column > 2) {
            out += "\\\n  ";
            column = 2;
        }
        const auto byte = static_cast<unsigned char>(data[i]);
        out += kDigits[byte >> 4];
        out += kDigits[byte & 0x0F];
        if (i + 1 < data.size()) out += ',';
        column += width;
    }
}

std::string hexTypeTag(std::uint32_t type) {
    if (type == REG_BINARY) return "hex:";
    static constexpr char kDigits[] = "0123456789abcdef";
    std::string digits;
    do {
        digits.insert(digits.begin(), kDigits[type & 0x0F]);
        type >>= 4;
    } while (type != 0);
    return "hex(" + digits + "):";
}

void appendValue(std::string& out, const RegistryValue& value) {
    const std::size_t lineStart = out.size();
    if (value.name.empty())
        out += '@';
    else
        appendQuoted(out, value.name);
    out += '=';
    const std::string_view data = value.data;
    if (value.type == REG_SZ && !data.empty() && data.back() == '\0' &&
        isPlainUtf8Text(data.substr(0, data.size() - 1))) {
        appendQuoted(out, data.substr(0, data.size() - 1));
    } else if (value.type == REG_DWORD && data.size() == 4) {
        std::uint32_t number = 0;
        for (int i = 3; i >= 0; --i) number = (number << 8) | static_cast<unsigned char>(data[i]);
        static constexpr char kDigits[] = "0123456789abcdef";
        out += "dword:";
        for (int shift = 28; shift >= 0; shift -= 4) out += kDigits[(number >> shift) & 0x0F];
    } else {
        out += hexTypeTag(value.type);
        appendHexList(out, data, out.size() - lineStart);
    }
    out += '\n';
}

// Keys nest at most kMaxKeyDepth deep, which bounds the recursion.
void appendKey(std::string& out, const RegistryKey& key, const std::string& path, bool isRoot) {
    // A key with subkeys and no values is made again by its subkeys' sections.
    if (!key.values().empty() || (!isRoot && key.subkeys().empty())) {
        out += '\n';
        out += '[';
        out += path;
        out += "]\n";
        for (const auto& value : key.values()) appendValue(out, value);
    }
    for (const auto& sub : key.subkeys()) appendKey(out, sub, path + '\\' + sub.name(), false);
}

// ---------------------------------------------------------------- reading

std::string_view trim(std::string_view s) {
    while (!s.empty() && (s.front() == ' ' || s.front() == '\t')) s.remove_prefix(1);
    while (!s.empty() && (s.back() == ' ' || s.back() == '\t' || s.back() == '\r')) s.remove_suffix(1);
    return s;
}

bool startsWithNoCase(std::string_view s, std::string_view prefix) {
    return s.size() >= prefix.size() && RegistryKey::sameName(s.substr(0, prefix.size()), prefix);
}

int hexDigit(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

// Reads a quoted text starting at s[0] == '"'. "\\" and "\"" are escapes; a
// backslash before anything else stands for itself.
std::optional<std::string> readQuoted(std::string_view& s) {
    std::string text;
    std::size_t i = 1;
    while (i < s.size()) {
        const char c = s[i];
        if (c == '"') {
            s.remove_prefix(i + 1);
            return text;
        }
        if (c == '\\' && i + 1 < s.size() && (s[i + 1] == '\\' || s[i + 1] == '"')) {
            text += s[i + 1];
            i += 2;
            continue;
        }
        text += c;
        ++i;
    }
    return std::nullopt;
}

std::optional<std::string> readHexList(std::string_view s) {
    std::string bytes;
    s = trim(s);
    if (s.empty()) return bytes;
    while (true) {
        s = trim(s);
        if (s.size() < 2) return std::nullopt;
        const int hi = hexDigit(s[0]);
        const int lo = hexDigit(s[1]);
        if (hi < 0 || lo < 0) return std::nullopt;
        bytes += static_cast<char>(hi * 16 + lo);
        s = trim(s.substr(2));
        if (s.empty()) return bytes;
        if (s.front() != ',') return std::nullopt;
        s.remove_prefix(1);
    }
}

struct Line {
    std::size_t number;
    std::string text;
};

// Splits the text into logical lines: trailing "\" joins a line with the
// next. `dangling` tells that the text ends on such a line (it was cut off).
std::vector<Line> logicalLines(std::string_view text, bool& dangling) {
    std::vector<Line> lines;
    std::size_t number = 0;
    bool continued = false;
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        std::string_view raw = text.substr(0, end);
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
        ++number;
        std::string_view line = trim(raw);
        const bool continues = !line.empty() && line.back() == '\\';
        if (continues) line.remove_suffix(1);
        if (continued)
            lines.back().text += line;
        else
            lines.push_back(Line{number, std::string(line)});
        continued = continues;
    }
    dangling = continued;
    return lines;
}

class Parser {
public:
    explicit Parser(RegistryTree& tree) : tree_(tree) {}

    std::optional<RegistryFile::ParseError> run(std::string_view text) {
        if (text.starts_with("\xEF\xBB\xBF")) text.remove_prefix(3);
        if (text.starts_with("\xFF\xFE") || text.starts_with("\xFE\xFF"))
            return RegistryFile::ParseError{1, "the file is in UTF-16, not UTF-8"};
        bool headerSeen = false;
        bool dangling = false;
        const std::vector<Line> lines = logicalLines(text, dangling);
        for (const auto& line : lines) {
            line_ = line.number;
            const std::string_view s = line.text;
            if (s.find('\0') != std::string_view::npos) return error("the line holds NUL bytes");
            if (s.empty()) continue;
            if (!headerSeen) {
                if (s != RegistryFile::kHeader) return error("the first line is not \"" + std::string(RegistryFile::kHeader) + "\"");
                headerSeen = true;
                continue;
            }
            if (s.front() == ';') continue;
            const bool ok = s.front() == '[' ? section(s) : value(s);
            if (!ok) return error_;
        }
        if (!headerSeen) return RegistryFile::ParseError{1, "the file is empty"};
        if (dangling) return RegistryFile::ParseError{lines.back().number, "the file ends in a continued line"};
        return std::nullopt;
    }

private:
    bool fail(std::string reason) {
        error_ = RegistryFile::ParseError{line_, std::move(reason)};
        return false;
    }
    std::optional<RegistryFile::ParseError> error(std::string reason) {
        return RegistryFile::ParseError{line_, std::move(reason)};
    }

    bool section(std::string_view s) {
        if (s.back() != ']') return fail("a key line does not end with \"]\"");
        s = s.substr(1, s.size() - 2);
        const bool remove = !s.empty() && s.front() == '-';
        if (remove) s.remove_prefix(1);
        const std::size_t slash = s.find('\\');
        const auto root = rootKeyFromName(s.substr(0, slash));
        if (!root) return fail("unknown root key \"" + std::string(s.substr(0, slash)) + "\"");
        const auto parts = splitSubkeyPath(slash == std::string_view::npos ? std::string_view{} : s.substr(slash + 1));
        if (!parts) return fail("a key name is empty or holds control characters");
        if (parts->size() > kMaxKeyDepth)
            return fail("a key is nested deeper than " + std::to_string(kMaxKeyDepth) + " levels");
        const KeyPath path{*root, *parts};
        current_ = nullptr;
        if (remove) {
            tree_.deleteKey(path);
        } else {
            tree_.createKey(path);
            current_ = tree_.find(path);
        }
        return true;
    }

    bool value(std::string_view s) {
        std::string name;
        if (s.front() == '@') {
            s.remove_prefix(1);
        } else if (s.front() == '"') {
            auto quoted = readQuoted(s);
            if (!quoted) return fail("a value name has no closing quote");
            name = std::move(*quoted);
        } else {
            return fail("unexpected text");
        }
        if (current_ == nullptr) return fail("a value stands outside any key");
        s = trim(s);
        if (s.empty() || s.front() != '=') return fail("a value name is not followed by \"=\"");
        s = trim(s.substr(1));
        if (s == "-") {
            current_->removeValue(name);
            return true;
        }
        std::uint32_t type = REG_SZ;
        std::string data;
        if (!s.empty() && s.front() == '"') {
            auto text = readQuoted(s);
            if (!text) return fail("a string has no closing quote");
            if (!trim(s).empty()) return fail("text follows a string");
            data = std::move(*text);
            data += '\0';
        } else if (startsWithNoCase(s, "dword:")) {
            const std::string_view digits = trim(s.substr(6));
            if (digits.size() != 8) return fail("a dword is not 8 hex digits");
            std::uint32_t number = 0;
            for (const char c : digits) {
                const int d = hexDigit(c);
                if (d < 0) return fail("a dword is not 8 hex digits");
                number = number * 16 + static_cast<std::uint32_t>(d);
            }
            type = REG_DWORD;
            for (int i = 0; i < 4; ++i) data += static_cast<char>((number >> (8 * i)) & 0xFF);
        } else if (startsWithNoCase(s, "hex")) {
            s.remove_prefix(3);
            type = REG_BINARY;
            if (!s.empty() && s.front() == '(') {
                const std::size_t close = s.find(')');
                if (close == std::string_view::npos || close == 1 || close > 9) return fail("a hex type is malformed");
                std::uint32_t number = 0;
                for (const char c : s.substr(1, close - 1)) {
                    const int d = hexDigit(c);
                    if (d < 0) return fail("a hex type is malformed");
                    number = number * 16 + static_cast<std::uint32_t>(d);
                }
                type = number;
                s.remove_prefix(close + 1);
            }
            if (s.empty() || s.front() != ':') return fail("a hex type is not followed by \":\"");
            auto bytes = readHexList(s.substr(1));
            if (!bytes) return fail("a hex list is malformed");
            data = std::move(*bytes);
        } else {
            return fail("a value's data is not a string, dword or hex list");
        }
        current_->setValue(name, type, std::move(data));
        return true;
    }

    RegistryTree& tree_;
    // The key of the section being read: found once, not again for each of
    // its values. Only a section line changes the tree's keys.
    RegistryKey* current_ = nullptr;
    std::size_t line_ = 0;
    RegistryFile::ParseError error_;
};

}  // namespace

std::optional<RegistryFile::ParseError> RegistryFile::parse(std::string_view text, RegistryTree& tree) {
    return Parser(tree).run(text);
}

std::string RegistryFile::format(const RegistryTree& tree) {
    std::string out(kHeader);
    out += '\n';
    for (const auto& root : tree.roots()) appendKey(out, root, root.name(), true);
    return out;
}

}  // namespace vantorel
