#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace velumar {

// Splits a command line into the program and its arguments. Everything up to the last "MSWIN.EXE"
// is the program's path, blanks included. Without that name the path ends at the first blank, or at
// the closing quote if it begins with one. The path gets the system's own separators.
std::vector<std::string> SplitCommandLine(std::string_view command_line);

// Returns true if an argument asks for help or the version, which need no display.
bool AsksForHelp(int argument_count, const char* const* arguments);

}  // namespace velumar
