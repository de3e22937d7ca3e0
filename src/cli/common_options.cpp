#include "cli/common_options.h"

#include "base/dates.h"
#include "platform/system.h"

namespace velumar {

void AddDatePattern(CLI::App& command, std::string& pattern) {
  command.add_option("--date-pattern", pattern,
                     "the format of dates, such as dd/MM/yyyy (default: that of the user's "
                     "locale)");
}

std::string UsedDatePattern(const std::string& given) {
  return given.empty() ? SystemLocale()->ShortDatePattern() : given;
}

CLI::Option* AddRunArguments(CLI::App& command, RunArguments& arguments) {
  command.add_option("FILE", arguments.file, "the ledger, such as Portfolio.mdb")->required();
  return command.add_option("--run", arguments.run, "the number of an archived run")
      ->check(CLI::PositiveNumber);
}

LedgerConnection OpenRun(const RunArguments& arguments) {
  LedgerConnection ledger([pattern = UsedDatePattern(arguments.date_pattern)](
                              std::string_view date) { return IsoDateText(date, pattern); });
  LedgerOpenToRead(ledger, arguments.file);
  RequireRun(ledger, arguments.run);
  return ledger;
}

}  // namespace velumar
