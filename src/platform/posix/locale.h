#pragma once

#include <string>
#include <string_view>

#include "platform/services.h"

namespace velumar {

// The date format of the environment's LC_TIME, which the process itself doesn't switch to.
// QLocale's short format has two-digit years where the system's has four.
class PosixLocale : public LocaleInfo {
 public:
  PosixLocale();

  std::string DateSeparator() const override { return separator_; }
  std::string ShortDatePattern() const override { return pattern_; }

 private:
  std::string pattern_;
  std::string separator_;
};

// Turns a date format of strftime into a pattern of d, M and y: "dd.MM.yyyy" for "%d.%m.%Y". Other
// letters are put in single quotes. Returns "M/d/yyyy" for a format that does not have day, month
// and year exactly once or can't be written as a pattern.
std::string PatternOfDateFormat(std::string_view format);

// The text between the fields of a pattern; "/" if it isn't the same between all of them.
std::string SeparatorOfPattern(std::string_view pattern);

}  // namespace velumar
