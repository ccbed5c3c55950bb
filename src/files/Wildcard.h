#pragma once
// File-name wildcards, compared against the whole name without regard to
// case (Unicode simple case folding): "*" any run of characters, "?" one
// character, "#" one digit, "[abc]" one of a set, "[!abc]" one not in it,
// "[a-z]" a range.

#include <string>
#include <string_view>
#include <vector>

namespace vantorel {

bool wildcardMatch(std::string_view pattern, std::string_view name);

// The pieces of a ";"-separated filter, each trimmed of blanks at both ends.
// An empty filter gives no piece; ";" gives two empty pieces (which match no
// name).
std::vector<std::string> splitFilter(std::string_view filter);

// True when `name` matches one of the filter's pieces.
bool matchesAny(const std::vector<std::string>& patterns, std::string_view name);

}  // namespace vantorel
