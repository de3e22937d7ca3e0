#include "cli/date_pattern.h"

#include "platform/system_locale.h"

namespace velumar {

void AddDatePattern(CLI::App& command, std::string& pattern) {
  command.add_option("--date-pattern", pattern,
                     "how dates are shown, such as dd/MM/yyyy (by default as the user's locale "
                     "has it)");
}

std::string UsedDatePattern(const std::string& given) {
  return given.empty() ? SystemLocale()->ShortDatePattern() : given;
}

}  // namespace velumar
