#pragma once

#include <sys/types.h>

#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

namespace velumar {

// The program under test, with its own settings folder. Its chart program writes its state to the
// same output, one line of JSON after each change.
class RunningProgram {
 public:
  // `chart_link` is "direct" or "keys".
  RunningProgram(const std::filesystem::path& settings, const std::filesystem::path& output,
                 const std::string& chart_link = "direct");
  // Kills both programs.
  ~RunningProgram();
  RunningProgram(const RunningProgram&) = delete;
  RunningProgram& operator=(const RunningProgram&) = delete;

  // True once the program has ended by itself; then ExitCode() is known.
  bool Ended();
  int ExitCode() const { return exit_code_; }
  // All states of the chart program so far.
  std::vector<nlohmann::json> States() const;

 private:
  std::filesystem::path settings_;
  std::filesystem::path output_;
  pid_t pid_ = 0;
  bool ended_ = false;
  int exit_code_ = -1;
};

}  // namespace velumar
