#pragma once

#include <CLI/CLI.hpp>
#include <string>

#include "results/run_record.h"

namespace velumar {

// Adds the option "--date-pattern", whose text goes into `pattern`.
void AddDatePattern(CLI::App& command, std::string& pattern);

// The given pattern; the user's locale's if it is empty.
std::string UsedDatePattern(const std::string& given);

// The run that a command reads from a ledger.
struct RunArguments {
  std::string file;
  int run = kRunNow;
  std::string date_pattern;
};

// Adds FILE and the option "--run", which is returned.
CLI::Option* AddRunArguments(CLI::App& command, RunArguments& arguments);

// Opens the ledger to read the run. Throws LedgerError, also for a number that no run has.
LedgerConnection OpenRun(const RunArguments& arguments);

}  // namespace velumar
