#pragma once

#include <string>

#include "platform/services.h"

namespace velumar {

// The short date of the user's own region settings, which may change while the program runs.
class WindowsLocale : public LocaleInfo {
 public:
  std::string DateSeparator() const override;
  std::string ShortDatePattern() const override;
};

}  // namespace velumar
