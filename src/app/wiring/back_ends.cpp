#include "app/wiring/back_ends.h"

#include <exception>
#include <filesystem>
#include <functional>

#include "base/paths.h"
#include "platform/chart_program_keys.h"
#include "platform/user_files.h"

namespace velumar {

namespace {

// The user's samples, with a separator behind them.
std::string Samples(const std::filesystem::path& program_folder) {
  return PathText(SampleDirectory(program_folder) / "");
}

// What fails is told, and the program comes up without it.
void Try(std::vector<std::string>& problems, const std::string& beginning,
         const std::function<void()>& step) {
  try {
    step();
  } catch (const std::exception& error) {
    problems.push_back(beginning + error.what());
  }
}

}  // namespace

void AddCommonBackEnds(BackEnds& ends, const std::filesystem::path& program_folder) {
  Try(ends.problems, "",
      [&] { EnsureChartProgramKeys(*ends.registry, PathText(program_folder / "charthost")); });
  Try(ends.problems, "The samples can't be copied for you: ", [&] {
    ends.default_data_dir = Samples(program_folder);
  });
  ends.ledger_file = PathText(LedgerFile(program_folder));
}

}  // namespace velumar
