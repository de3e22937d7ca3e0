#pragma once

#include <string>

namespace velumar {

// Tells why the program ends before it has shown a window: on the standard error output, or in a
// box of the system where there is none.
void TellStartFailure(const std::string& why);

}  // namespace velumar
