#pragma once

#include <filesystem>
#include <string_view>

namespace velumar {

// Where a file of this user and program lies: in "velumar" under $XDG_CONFIG_HOME, else under
// ~/.config; on Windows in "Velumar" under %LOCALAPPDATA%. Nothing is created.
std::filesystem::path UserFile(std::string_view name);

// "Portfolio.mdb" in the program's folder. Where that can't be written, and always where the
// program is installed, in "velumar" under $XDG_DATA_HOME, else ~/.local/share, on Windows in
// "Velumar" under %LOCALAPPDATA%; that folder is created.
std::filesystem::path LedgerFile(const std::filesystem::path& program_folder);

// The sample directory, which a run writes into: beside the program, or, where the program is
// installed for all users, this user's own copy beside the ledger, made at the first call. Throws
// std::filesystem::filesystem_error where the copy can't be made.
std::filesystem::path SampleDirectory(const std::filesystem::path& program_folder);

// This user's own copy of what all users share, made at the first call, whole or not at all. Throws
// std::filesystem::filesystem_error.
std::filesystem::path OwnCopy(const std::filesystem::path& shared,
                              const std::filesystem::path& own);

}  // namespace velumar
