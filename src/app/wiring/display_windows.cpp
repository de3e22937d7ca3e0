#include "app/wiring/display.h"

namespace velumar {

std::optional<std::string> ChooseDisplay() { return std::nullopt; }

}  // namespace velumar
