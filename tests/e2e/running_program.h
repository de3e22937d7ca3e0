#pragma once

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <nlohmann/json.hpp>

#include "support/scratch_folder.h"

namespace velumar {

// The program under test, with its own settings folder. Its chart program writes its state to the
// same output, one line of JSON after each change.
class RunningProgram {
 public:
  // `chart_link` is "direct" or "keys".
  RunningProgram(const std::filesystem::path& settings, const std::filesystem::path& output,
                 const std::string& chart_link = "direct")
      : settings_(settings), output_(output), pid_(fork()) {
    if (pid_ != 0) return;
    setpgid(0, 0);
    const int file = open(output.c_str(), O_WRONLY | O_CREAT | O_APPEND, 0600);
    dup2(file, STDOUT_FILENO);
    setenv("XDG_CONFIG_HOME", settings.c_str(), 1);
    execl(VELUMAR_PROGRAM, VELUMAR_PROGRAM, "--settings-dir", settings.c_str(),
          "--chart-argument=--state", "--chart-link", chart_link.c_str(), nullptr);
    _exit(127);
  }
  // Kills both programs.
  ~RunningProgram() {
    if (!Ended()) {
      kill(pid_, SIGKILL);
      waitpid(pid_, nullptr, 0);
    }
    // The chart program has its own session, and others may run on this machine.
    const std::string variable = '\0' + ("XDG_CONFIG_HOME=" + settings_.string()) + '\0';
    for (const auto& entry : std::filesystem::directory_iterator("/proc")) {
      const pid_t process = std::atoi(entry.path().filename().c_str());
      if (process == 0 || ReadFile(entry.path() / "comm") != "MSWIN.EXE\n") continue;
      if (('\0' + ReadFile(entry.path() / "environ")).find(variable) != std::string::npos) {
        kill(process, SIGKILL);
      }
    }
  }
  RunningProgram(const RunningProgram&) = delete;
  RunningProgram& operator=(const RunningProgram&) = delete;

  // True once the program has ended by itself; then ExitCode() is known.
  bool Ended() {
    if (ended_) return true;
    int status = 0;
    if (waitpid(pid_, &status, WNOHANG) != pid_) return false;
    ended_ = true;
    exit_code_ = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return true;
  }
  int ExitCode() const { return exit_code_; }
  // All states of the chart program so far.
  std::vector<nlohmann::json> States() const {
    std::vector<nlohmann::json> states;
    std::ifstream in(output_);
    for (std::string line; std::getline(in, line);) {
      nlohmann::json state = nlohmann::json::parse(line, nullptr, false);
      if (state.is_object() && state.contains("event")) states.push_back(std::move(state));
    }
    return states;
  }

 private:
  std::filesystem::path settings_;
  std::filesystem::path output_;
  pid_t pid_;
  bool ended_ = false;
  int exit_code_ = -1;
};

}  // namespace velumar
