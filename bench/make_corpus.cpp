// Writes the benchmark corpus: a deterministic tree of tens of thousands of
// text files (a few hundred MB) and one large log file.
//
//   vantorel-make-corpus FOLDER [FILES] [BIG_LOG_MB]

#include <sys/stat.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

namespace {

struct Random {
    std::uint64_t state;
    std::uint64_t next() {
        state ^= state << 13;
        state ^= state >> 7;
        state ^= state << 17;
        return state;
    }
    std::size_t below(std::size_t n) { return static_cast<std::size_t>(next() % n); }
};

const std::vector<std::string> kWords = {
    "the", "of", "and", "to", "in", "is", "that", "for", "it", "as", "was", "with", "be", "by",
    "on", "not", "he", "this", "are", "or", "his", "from", "at", "which", "but", "have", "an",
    "they", "you", "were", "their", "one", "all", "we", "can", "her", "has", "there", "been",
    "if", "more", "when", "will", "would", "who", "so", "no", "request", "response", "buffer",
    "socket", "handler", "config", "value", "result", "number", "string", "object", "return",
    "static", "const", "struct", "printf", "malloc", "free", "index", "count", "status",
    "colour", "colour_scheme", "Vantorel", "Search", "Replace", "Extract", "folder", "filter"};

std::string word(Random& r) { return kWords[r.below(kWords.size())]; }

std::string line(Random& r, std::size_t fileKind) {
    std::string text;
    switch (r.below(12)) {
        case 0: text = "ERROR " + std::to_string(r.below(900) + 100) + " ms in " + word(r); break;
        case 1: text = "id=" + std::to_string(r.below(100000)) + " user=" + word(r) + "@example.com"; break;
        case 2: text = "code " + std::string(1, static_cast<char>('A' + r.below(26))) +
                       std::string(1, static_cast<char>('A' + r.below(26))) + std::to_string(r.below(900) + 100);
                break;
        default: {
            const std::size_t n = 4 + r.below(12);
            for (std::size_t i = 0; i < n; ++i) text += (i ? " " : "") + word(r);
        }
    }
    if (fileKind == 1 && r.below(8) == 0) text += " caf\xc3\xa9";  // UTF-8
    if (fileKind == 2 && r.below(8) == 0) text += " caf\xe9";      // Windows-1252
    return text;
}

bool writeFile(const std::string& path, const std::string& text) {
    std::FILE* f = std::fopen(path.c_str(), "wb");
    if (!f) return false;
    const bool ok = std::fwrite(text.data(), 1, text.size(), f) == text.size();
    return std::fclose(f) == 0 && ok;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 2) {
        std::fprintf(stderr, "usage: %s FOLDER [FILES] [BIG_LOG_MB]\n", argv[0]);
        return 2;
    }
    const std::string root = argv[1];
    const std::size_t files = argc > 2 ? std::strtoul(argv[2], nullptr, 10) : 30000;
    const std::size_t bigMb = argc > 3 ? std::strtoul(argv[3], nullptr, 10) : 1024;
    Random r{0x9E3779B97F4A7C15ULL};
    ::mkdir(root.c_str(), 0755);
    const std::string tree = root + "/tree";
    ::mkdir(tree.c_str(), 0755);
    std::vector<std::string> folders = {tree};
    for (int a = 0; a < 12; ++a) {
        const std::string first = tree + "/dir" + std::to_string(a);
        ::mkdir(first.c_str(), 0755);
        folders.push_back(first);
        for (int b = 0; b < 8; ++b) {
            const std::string second = first + "/sub" + std::to_string(b);
            ::mkdir(second.c_str(), 0755);
            folders.push_back(second);
            for (int c = 0; c < 2; ++c) {
                const std::string third = second + "/leaf" + std::to_string(c);
                ::mkdir(third.c_str(), 0755);
                folders.push_back(third);
            }
        }
    }
    const char* extensions[] = {".txt", ".log", ".c", ".html"};
    std::size_t total = 0;
    for (std::size_t i = 0; i < files; ++i) {
        const std::size_t kind = r.below(50) == 0 ? 2 : r.below(20) == 0 ? 1 : 0;
        const std::size_t target = 1000 + r.below(19000);
        std::string text;
        while (text.size() < target) text += line(r, kind) + (kind == 2 ? "\r\n" : "\n");
        const std::string path = folders[r.below(folders.size())] + "/file" + std::to_string(i) +
                                 extensions[r.below(4)];
        if (!writeFile(path, text)) {
            std::perror(path.c_str());
            return 1;
        }
        total += text.size();
    }
    std::printf("%zu files, %zu MB in %s\n", files, total >> 20, tree.c_str());
    if (bigMb > 0) {
        const std::string big = root + "/big/big.log";
        ::mkdir((root + "/big").c_str(), 0755);
        std::FILE* f = std::fopen(big.c_str(), "wb");
        if (!f) {
            std::perror(big.c_str());
            return 1;
        }
        std::string chunk;
        std::size_t written = 0;
        const std::size_t limit = bigMb << 20;
        while (written < limit) {
            chunk.clear();
            while (chunk.size() < (1 << 20)) chunk += "2026-11-21 12:00:00 " + line(r, 0) + "\n";
            std::fwrite(chunk.data(), 1, chunk.size(), f);
            written += chunk.size();
        }
        std::fclose(f);
        std::printf("%zu MB in %s\n", written >> 20, big.c_str());
    }
    return 0;
}
