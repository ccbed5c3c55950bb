// How long the settings store takes to load and to write back settings
// files of unusual shape, up to the store's size limit (64 MiB): many
// sibling keys, many values in one key, the deepest keys allowed with values
// at every level, and keys made and deleted again. Each time should grow in
// step with the file's size, never with its square.
//
//   cmake --build BUILD --target settings_load && BUILD/bench/settings_load [MB]

#include <stdlib.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <vector>

#include "settings/RegistryFile.h"
#include "settings/RegistryStore.h"

namespace {

namespace fs = std::filesystem;
using vantorel::HKEY_CURRENT_USER;
using vantorel::KeyPath;
using vantorel::REG_SZ;
using vantorel::RegistryStore;

const std::string kPrefix = "[HKEY_CURRENT_USER\\Software\\Brimlark\\Vantorel";

// Lines from `line(i)` as long as the text stays within `bytes`.
std::string fill(std::size_t bytes, const std::function<std::string(std::size_t)>& line) {
    std::string text = std::string(vantorel::RegistryFile::kHeader) + "\n";
    for (std::size_t i = 0;; ++i) {
        const std::string next = line(i);
        if (text.size() + next.size() > bytes) return text;
        text += next;
    }
}

std::string deepPath(std::size_t depth) {
    std::string path = "[HKEY_CURRENT_USER";
    for (std::size_t i = 0; i < depth; ++i) path += "\\k" + std::to_string(i);
    return path;
}

double seconds(const std::function<void()>& work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

}  // namespace

int main(int argc, char** argv) {
    const std::size_t megabytes = argc > 1 ? std::strtoul(argv[1], nullptr, 10) : 64;
    std::string pattern = (fs::temp_directory_path() / "vantorel-settings-bench-XXXXXX").string();
    const fs::path folder = ::mkdtemp(pattern.data());
    const std::string deepest = deepPath(512);
    const struct {
        const char* name;
        std::function<std::string(std::size_t)> line;
    } shapes[] = {
        {"sibling keys", [](std::size_t i) { return kPrefix + "\\Key" + std::to_string(i) + "]\n"; }},
        {"values in one key",
         [](std::size_t i) { return i == 0 ? kPrefix + "]\n" : "\"Value" + std::to_string(i) + "\"=\"x\"\n"; }},
        {"512 levels, values under the deepest",
         [&](std::size_t i) { return i == 0 ? deepest + "]\n" : "\"V" + std::to_string(i) + "\"=\"x\"\n"; }},
        {"512 levels, a value at each",
         [](std::size_t i) { return deepPath(i % 512 + 1) + "]\n\"V" + std::to_string(i) + "\"=\"x\"\n"; }},
        {"keys made, the oldest deleted",
         [](std::size_t i) {
             const std::string key = "\\Key" + std::to_string(i % 2 == 0 ? i / 2 : i / 4);
             return (i % 2 == 0 ? "[" : "[-") + kPrefix.substr(1) + key + "]\n";
         }},
    };
    std::setvbuf(stdout, nullptr, _IOLBF, 0);
    std::printf("%-40s %8s %8s %8s\n", "shape", "MiB", "load s", "write s");
    for (const auto& shape : shapes) {
        for (const std::size_t bytes : {(megabytes << 20) / 8, megabytes << 20}) {
            const fs::path file = folder / "settings.reg";
            const std::string text = fill(bytes, shape.line);
            std::ofstream(file, std::ios::binary) << text;
            RegistryStore store(file);
            const KeyPath key{HKEY_CURRENT_USER, {"Software", "Brimlark", "Vantorel"}};
            const double load = seconds([&] { store.keyExists(key); });
            store.createKey(key);
            store.setValue(key, "Find0", REG_SZ, std::string("x\0", 2));
            const double write = seconds([&] { store.flush(); });
            std::printf("%-40s %8.1f %8.2f %8.2f\n", shape.name, static_cast<double>(text.size()) / (1 << 20), load, write);
        }
    }
    fs::remove_all(folder);
    return 0;
}
