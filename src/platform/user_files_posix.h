#pragma once

#include <filesystem>
#include <string_view>

namespace velumar {

// Where a file of this user and program lies: in "velumar" under $XDG_CONFIG_HOME, else under
// ~/.config. Nothing is created.
std::filesystem::path UserFile(std::string_view name);

// "Portfolio.mdb" in the program's folder, or, where that can't be written, in "velumar" under
// $XDG_DATA_HOME, else ~/.local/share; that folder is created.
std::filesystem::path LedgerFile(const std::filesystem::path& program_folder);

}  // namespace velumar
