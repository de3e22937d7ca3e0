#pragma once

#include <sys/types.h>

#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

namespace velumar {

// The program under test with a settings folder of its own. Its chart program writes its state, a
// line of JSON after each change, to the same output.
class RunningProgram {
 public:
  RunningProgram(const std::filesystem::path& settings, const std::filesystem::path& output);
  // Ends both programs, however they stand.
  ~RunningProgram();
  RunningProgram(const RunningProgram&) = delete;
  RunningProgram& operator=(const RunningProgram&) = delete;

  // True once the program has ended by itself; its exit code is then known.
  bool Ended();
  int ExitCode() const { return exit_code_; }
  // All states that the chart program has told so far.
  std::vector<nlohmann::json> States() const;

 private:
  std::filesystem::path settings_;
  std::filesystem::path output_;
  pid_t pid_ = 0;
  bool ended_ = false;
  int exit_code_ = -1;
};

}  // namespace velumar
