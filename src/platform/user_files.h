#pragma once

#include <filesystem>
#include <string_view>

namespace velumar {

// The path of a file of this user: in "velumar" in $XDG_CONFIG_HOME or ~/.config; on Windows in
// "Velumar" in %LOCALAPPDATA%. Creates nothing.
std::filesystem::path UserFile(std::string_view name);

// The path of "Portfolio.mdb": in the program's folder, or, if that can't be written or the program
// is installed, in "velumar" in $XDG_DATA_HOME or ~/.local/share, on Windows in "Velumar" in
// %LOCALAPPDATA%. That folder is created.
std::filesystem::path LedgerFile(const std::filesystem::path& program_folder);

// The sample directory, which a run writes to: next to the program, or, if the program is installed
// for all users, this user's own copy next to the ledger, created at the first call. A program is
// installed if the samples are in a "share" folder (share/velumar next to lib, on Windows share
// below the program) and not next to it. Throws std::filesystem::filesystem_error if it can't be
// copied.
std::filesystem::path SampleDirectory(const std::filesystem::path& program_folder);

// For SampleDirectory: copies `shared` to `own`, completely or not at all, if `own` doesn't exist.
// Returns `own`. Throws std::filesystem::filesystem_error.
std::filesystem::path OwnCopy(const std::filesystem::path& shared,
                              const std::filesystem::path& own);

}  // namespace velumar
