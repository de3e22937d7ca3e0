#pragma once

#include <CLI/CLI.hpp>
#include <string>

namespace velumar {

// Adds the option "--date-pattern", whose text goes into `pattern`.
void AddDatePattern(CLI::App& command, std::string& pattern);

// The given pattern; where it is empty, that of the user's locale.
std::string UsedDatePattern(const std::string& given);

}  // namespace velumar
