#pragma once

#include <string>
#include <vector>

#include "cli/commands.h"

namespace velumar {

// Runs one command, `arguments` being what stands behind the program's name, and answers the exit
// code: 0, 1 after a failure, 2 for arguments that can't be understood. Either way `context.err`
// then holds a sentence that says what was wrong.
int RunCli(const std::vector<std::string>& arguments, CliContext& context);

}  // namespace velumar
