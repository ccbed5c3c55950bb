#pragma once
// Shortens a path to a number of characters by putting an ellipsis in its
// middle, keeping its beginning and its file name ("/home/ann/.../notes.txt").

#include <cstddef>
#include <string>
#include <string_view>

namespace vantorel {

// `path` is UTF-8; characters are code points. A path that fits is returned
// as it is. Otherwise the file name is kept whole when it fits with the
// ellipsis, preceded by as much of the path's beginning as fits; a file name
// too long for that keeps its end after the ellipsis.
std::string compactPath(std::string_view path, std::size_t maxChars);

}  // namespace vantorel
