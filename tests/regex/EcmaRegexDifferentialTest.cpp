// The engine's regular expressions against JavaScript's RegExp: every case of
// tests/data/regex-cases.json (written by regex-fixtures/generate.mjs from
// node's answers) is run on UTF-8 text and, where Windows-1252 can hold the
// subject, on single-byte text, and must give the same matches (position,
// text, groups) and the same replacement.

#include <gtest/gtest.h>

#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>

#include "regex/Regex.h"
#include "regex/ReplaceTemplate.h"

namespace vantorel {
namespace {

using nlohmann::json;

const json& fixture() {
    static const json document = [] {
        std::ifstream in(VANTOREL_TEST_DATA "/regex-cases.json");
        return in ? json::parse(in) : json();
    }();
    return document;
}

std::string describe(const json& c) {
    std::ostringstream text;
    text << "[" << c["topic"].get<std::string>() << "] pattern " << json(c["pattern"]).dump()
         << (c["ignoreCase"].get<bool>() ? " (ignore case)" : "") << " on " << json(c["subject"]).dump();
    if (c.contains("template")) text << " with template " << json(c["template"]).dump();
    return text.str();
}

json text(std::string_view bytes, TextEncoding encoding) { return toUtf8(bytes, encoding); }

// What the engine does with a case, in the fixture's terms.
json run(const json& c, TextEncoding encoding) {
    const std::string pattern = c["pattern"];
    std::string subject = c["subject"];
    if (encoding == TextEncoding::Windows1252) subject = *utf8ToWindows1252(subject);
    std::unique_ptr<Regex> regex;
    try {
        regex = std::make_unique<Regex>(pattern, c["ignoreCase"].get<bool>());
    } catch (const PatternError& e) {
        return json{{"error", e.what()}};
    }
    const CompiledPattern& compiled = regex->forEncoding(encoding);
    json matches = json::array();
    compiled.forEachMatch(subject, [&](const Match& m) {
        json match{{"index", countCharacters(subject.substr(0, m.begin()), encoding)},
                   {"value", text(m.value(), encoding)},
                   {"groups", json::array()}};
        for (std::uint32_t n = 1; n <= compiled.captureCount(); ++n) {
            const auto group = m.group(n);
            match["groups"].push_back(group ? text(*group, encoding) : json());
        }
        if (compiled.hasNamedGroups() && c["matches"].is_array() && !c["matches"].empty() &&
            c["matches"][0].contains("named")) {
            json named = json::object();
            for (const auto& [name, value] : c["matches"][0]["named"].items()) {
                const std::uint32_t number = compiled.groupNumber(name);
                const auto group = number ? m.group(number) : std::nullopt;
                named[name] = number == 0 ? json("(no such group)") : group ? text(*group, encoding) : json();
            }
            match["named"] = named;
        }
        matches.push_back(match);
        return true;
    });
    json outcome{{"matches", matches}};
    if (c.contains("template")) {
        const ReplaceTemplate parsed(c["template"].get<std::string>(), compiled);
        const auto replacement = parsed.transcoded(encoding);
        std::string replaced;
        StringSink sink(replaced);
        replaceAll(compiled, subject, *replacement, sink);
        outcome["replaced"] = text(replaced, encoding);
    }
    return outcome;
}

json expected(const json& c) {
    json outcome{{"matches", c["matches"]}};
    if (c.contains("replaced")) outcome["replaced"] = c["replaced"];
    return outcome;
}

class EcmaRegexDifferential : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(fixture().contains("cases")) << "cannot read " VANTOREL_TEST_DATA "/regex-cases.json";
    }
    static const json& cases() { return fixture()["cases"]; }

    void expectAgreement(TextEncoding encoding) {
        int checked = 0;
        for (const json& c : cases()) {
            if (c.contains("error") || c.contains("known")) continue;
            if (encoding == TextEncoding::Windows1252 && !c["singleByte"].get<bool>()) continue;
            ++checked;
            const json actual = run(c, encoding);
            if (actual != expected(c))
                ADD_FAILURE() << describe(c) << "\n  ECMAScript: " << expected(c).dump()
                              << "\n  engine:     " << actual.dump();
        }
        EXPECT_GT(checked, 300);
    }
};

TEST_F(EcmaRegexDifferential, AgreesInUtf8Text) { expectAgreement(TextEncoding::Utf8); }

TEST_F(EcmaRegexDifferential, AgreesInSingleByteText) { expectAgreement(TextEncoding::Windows1252); }

TEST_F(EcmaRegexDifferential, RefusesWhatEcmaScriptRefuses) {
    int refused = 0;
    for (const json& c : cases()) {
        if (!c.contains("error")) continue;
        ++refused;
        const std::string pattern = c["pattern"];
        try {
            Regex regex(pattern, c["ignoreCase"].get<bool>());
            ADD_FAILURE() << describe(c) << ": accepted, but ECMAScript says " << c["error"].get<std::string>();
        } catch (const PatternError& e) {
            EXPECT_LE(e.offset(), countCharacters(pattern, TextEncoding::Utf8)) << describe(c);
        }
    }
    EXPECT_GT(refused, 40);
}

}  // namespace
}  // namespace vantorel
