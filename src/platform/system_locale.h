#pragma once

#include <memory>

#include "platform/services.h"

namespace velumar {

// The user's own date format, from wherever this platform keeps it.
std::unique_ptr<LocaleInfo> SystemLocale();

}  // namespace velumar
