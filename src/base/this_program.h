#pragma once

#include <string>

namespace velumar {

// This process, for messages: "velumar-cli (process 1234)".
std::string ThisProgram();

}  // namespace velumar
