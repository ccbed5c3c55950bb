#pragma once
// The text form of a registry store: the registry editor's export format.
//
//   Windows Registry Editor Version 5.00
//
//   [HKEY_CURRENT_USER\Software\Brimlark\Vantorel]
//   "Find0"="needle"
//   "Count"=dword:0000000a
//   "Path"=hex(2):25,00
//   @="the key's default value"
//
// The text is UTF-8 with LF line ends (CR LF and a byte-order mark are
// accepted). Strings are 8-bit, so the bytes after hex(1):, hex(2): and
// hex(7): are the value's own bytes with their NUL terminators, not UTF-16.
// A string that is plain printable UTF-8 with a single terminator is written
// between quotes; any other string (a lone NUL, a line break, bytes that are
// not UTF-8) is written as hex(1): so that it reads back byte for byte.
// Reading also accepts comments (";"), deletions ("[-key]", "name"=-) and
// hex lists continued over lines with a trailing "\". Keys nested deeper
// than kMaxKeyDepth are refused.

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "settings/RegistryTree.h"

namespace vantorel {

class RegistryFile {
public:
    static constexpr std::string_view kHeader = "Windows Registry Editor Version 5.00";

    struct ParseError {
        std::size_t line = 0;  // 1-based line of the text
        std::string reason;
    };

    // Reads text into `tree` (added to what it holds). Returns the first
    // error; on error `tree` holds whatever was read before it.
    static std::optional<ParseError> parse(std::string_view text, RegistryTree& tree);

    // The text form of a whole tree. A key gets a section when it holds
    // values or has no subkeys (so empty keys survive); a key with subkeys is
    // made again by theirs.
    static std::string format(const RegistryTree& tree);
};

}  // namespace vantorel
