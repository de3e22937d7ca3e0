#pragma once

#include <optional>
#include <string>

namespace velumar {

// Chooses the window system for this process, which must happen before the application object is
// built. A sentence for the user when there is none that Velumar can work with.
std::optional<std::string> ChooseDisplay();

}  // namespace velumar
