#pragma once

#include "cli/commands.h"

namespace CLI {
class App;
}

namespace velumar {

// Adds the files, folders and options of "import" to its command. What is given on the command line
// is in the arguments once it is parsed.
void AddImportOptions(CLI::App& command, ImportArguments& arguments);

}  // namespace velumar
