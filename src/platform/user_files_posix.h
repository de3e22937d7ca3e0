#pragma once

#include <filesystem>
#include <string_view>

namespace velumar {

// Where a file of this user and program lies: in "velumar" under $XDG_CONFIG_HOME, else under
// ~/.config. Nothing is created.
std::filesystem::path UserFile(std::string_view name);

}  // namespace velumar
