#pragma once

#include <string>
#include <vector>

namespace velumar {

// The arguments of this process without its name, as UTF-8.
std::vector<std::string> ProgramArguments(int argc, char** argv);

// Standard streams pass bytes through unchanged, line ends too; a console shows them as UTF-8.
void UsePlainStreams();

// Makes writing to a pipe that nobody reads fail instead of ending the process.
void IgnoreClosedPipes();

// Ends this process at once without destructors; what was printed is flushed.
[[noreturn]] void EndProcessAtOnce(int code);

}  // namespace velumar
