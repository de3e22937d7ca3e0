#pragma once

#include <string>
#include <string_view>

#include "platform/services.h"

namespace velumar {

// Dates as the environment's LC_TIME has them. The process's own locale isn't touched.
class PosixLocale : public LocaleInfo {
 public:
  PosixLocale();

  std::string DateSeparator() const override { return separator_; }
  std::string ShortDatePattern() const override { return pattern_; }

 private:
  std::string pattern_;
  std::string separator_;
};

// A date format of strftime as a pattern in the letters d, M and y: "dd.MM.yyyy" for "%d.%m.%Y".
// Texts that could be taken for letters stand in single quotes. "M/d/yyyy" for a format that hasn't
// day, month and year once each or that a pattern can't tell.
std::string PatternOfDateFormat(std::string_view format);

// What stands between the fields of a pattern; "/" where that differs from gap to gap.
std::string SeparatorOfPattern(std::string_view pattern);

}  // namespace velumar
