#pragma once

#include <cstdlib>
#include <map>
#include <optional>
#include <string>

namespace vantorel::test {

// Sets environment variables (nullptr unsets one) and puts the old values back when it goes.
class ScopedEnvironment {
public:
    ScopedEnvironment() = default;
    ScopedEnvironment(const char* name, const char* value) { set(name, value); }
    ScopedEnvironment(const ScopedEnvironment&) = delete;
    ScopedEnvironment& operator=(const ScopedEnvironment&) = delete;
    ~ScopedEnvironment() {
        for (const auto& [name, value] : saved_) put(name.c_str(), value ? value->c_str() : nullptr);
    }
    void set(const char* name, const char* value) {
        const char* old = std::getenv(name);
        if (!saved_.count(name)) saved_[name] = old ? std::optional<std::string>(old) : std::nullopt;
        put(name, value);
    }

private:
    static void put(const char* name, const char* value) { value ? ::setenv(name, value, 1) : ::unsetenv(name); }
    std::map<std::string, std::optional<std::string>> saved_;
};

}  // namespace vantorel::test
