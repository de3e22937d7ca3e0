#include <iostream>

#include "app/wiring/start_failure.h"

namespace velumar {

void TellStartFailure(const std::string& why) { std::cerr << "velumar: " << why << std::endl; }

}  // namespace velumar
