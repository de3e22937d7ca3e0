#pragma once

#include <string>

namespace velumar {

// This process as a message names it: "velumar-cli (process 1234)".
std::string ThisProgram();

}  // namespace velumar
