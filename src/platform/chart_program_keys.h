#pragma once

#include <string_view>

#include "platform/registry.h"

namespace velumar {

// Writes the registry entries by which the chart program is found, where they are missing: a key
// that marks a version as installed, its program folder, and empty texts for the two data folders
// that the setup window leaves behind when it closes. A program folder that no longer holds the
// program becomes `program_folder`; any other entry that's there stays. Throws std::runtime_error
// naming the key that can't be written.
void EnsureChartProgramKeys(Registry& registry, std::string_view program_folder);

}  // namespace velumar
