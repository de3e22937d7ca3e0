#pragma once

#include <string>

#include "platform/platform.h"

namespace velumar {

// Opens the project's own page in the browser, or the one that a setting names.
void OpenSupportPage(const Platform& platform);

}  // namespace velumar
