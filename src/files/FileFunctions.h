#pragma once
// File helpers of the engine. Paths are byte strings in the platform's form;
// folders in the engine's lists end with the separator.

#include <ctime>
#include <optional>
#include <string>
#include <string_view>

namespace vantorel {

inline constexpr char kPathSeparator = '/';

// True when the path names a regular file (through links) that can be examined.
bool FileExists(const std::string& path);
// True when the path names a folder (through links).
bool FolderExists(const std::string& path);
// True when the file's owner-write permission bit is clear (whoever runs us).
bool IsReadOnly(const std::string& path);
// The part after the last separator.
std::string FileNameOf(std::string_view path);
// Everything up to and including the last separator.
std::string FolderOf(std::string_view path);
// The folder with exactly one separator at its end.
std::string withTrailingSeparator(std::string folder);
// The folder with links resolved, ending in the separator; the folder as
// given when it cannot be resolved.
std::string realFolderOf(const std::string& folder);

// Where a file's ".bak" copy goes, always beside the file: when the fourth
// character from the end of the file's name is "." the name's last four
// characters are replaced by ".bak" ("notes.txt" gives "notes.bak"),
// otherwise ".bak" is appended ("page.html" gives "page.html.bak",
// "x.d/c" gives "x.d/c.bak"); a name that would be the file itself gets
// ".bak" appended ("old.bak" gives "old.bak.bak").
std::string backupNameFor(const std::string& path);

// The modification time as "YYYY-MM-DD hh:mm:ss" in local time.
std::string formatDateTime(std::time_t time);

// Deletes a file; false (with errno kept) when that fails.
bool deleteFile(const std::string& path);

// The text of the last system error, as the system words it.
std::string systemErrorText(int error);

}  // namespace vantorel
