#pragma once
// Where the program's own data files live ("intro.rtf", "readme.html" and the
// expression library and batch job files): beside the executable when that
// folder is writable, otherwise in the per-user data folder
// ($XDG_DATA_HOME/vantorel, or ~/.local/share/vantorel). An installed program
// (its share folder <prefix>/share/vantorel beside <prefix>/bin) keeps them in
// the per-user folder whoever runs it, root too, and finds the files it was
// shipped with in its share folder.

#include <filesystem>
#include <string_view>

namespace vantorel {

// The per-user data folder (which may not exist yet); empty when no home
// folder can be found.
std::filesystem::path userDataFolder();

// The folder of the running program's executable; empty when unknown.
std::filesystem::path executableFolder();

// The folder in which the program keeps its data files.
std::filesystem::path programDataFolder(const std::filesystem::path& executableFolder);

// The folder an installation puts the shipped data files in, found from the
// executable's folder; empty for an empty executable folder.
std::filesystem::path installedDataFolder(const std::filesystem::path& executableFolder);

// A data file to read: from the data folder, else from beside the
// executable (where the build puts the shipped files), else from the
// installed share folder. Empty when none has it.
std::filesystem::path findProgramFile(const std::filesystem::path& executableFolder, std::string_view name);

}  // namespace vantorel
