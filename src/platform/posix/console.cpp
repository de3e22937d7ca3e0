#include "platform/console.h"

#include <csignal>

namespace velumar {

std::vector<std::string> ProgramArguments(int argc, char** argv) { return {argv + 1, argv + argc}; }

void UsePlainStreams() {}

void IgnoreClosedPipes() { std::signal(SIGPIPE, SIG_IGN); }

}  // namespace velumar
