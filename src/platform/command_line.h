#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace velumar {

// A command line as program and arguments, each text an element of its own. All up to the last
// "MSWIN.EXE" is the program's path, in the platform's separators; without that name, the path ends
// at the first blank, or at the closing quote when it begins with one.
std::vector<std::string> SplitCommandLine(std::string_view command_line);

// True if the arguments of a process ask only for its help or version, which need no display.
bool AsksForHelp(int argument_count, const char* const* arguments);

}  // namespace velumar
