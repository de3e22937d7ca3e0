#include "platform/process.h"

#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <iostream>

namespace velumar {

std::vector<std::string> ProgramArguments(int argc, char** argv) { return {argv + 1, argv + argc}; }

void UsePlainStreams() {}

void IgnoreClosedPipes() { std::signal(SIGPIPE, SIG_IGN); }

void EndProcessAtOnce(int code) {
  std::cout.flush();
  std::fflush(nullptr);
  ::_exit(code);
}

}  // namespace velumar
