#pragma once

#include <string>
#include <vector>

namespace velumar {

// The arguments of this process behind its name, as UTF-8.
std::vector<std::string> ProgramArguments(int argc, char** argv);

// Bytes go in and out as they are, line ends too, and a console takes them as UTF-8.
void UsePlainStreams();

// Writing to a program that has gone away fails, and no more.
void IgnoreClosedPipes();

}  // namespace velumar
