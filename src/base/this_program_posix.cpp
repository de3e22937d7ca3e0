#include "base/this_program.h"

#include <unistd.h>

#include <cerrno>

namespace velumar {

std::string ThisProgram() {
  return std::string(program_invocation_short_name) + " (process " + std::to_string(::getpid()) +
         ")";
}

}  // namespace velumar
