#include "e2e/programs.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <fstream>
#include <iterator>

namespace velumar {

namespace {

// Files in /proc have no size.
std::string Content(const std::filesystem::path& file) {
  std::ifstream in(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

}  // namespace

std::vector<pid_t> ProcessesOf(const std::string& name, const std::string& variable) {
  std::vector<pid_t> processes;
  for (const auto& entry : std::filesystem::directory_iterator("/proc")) {
    const pid_t process = std::atoi(entry.path().filename().c_str());
    if (process == 0 || Content(entry.path() / "comm") != name + "\n") continue;
    const std::string environment = '\0' + Content(entry.path() / "environ");
    if (environment.find('\0' + variable + '\0') != std::string::npos) processes.push_back(process);
  }
  return processes;
}

RunningProgram::RunningProgram(const std::filesystem::path& settings,
                               const std::filesystem::path& output)
    : settings_(settings), output_(output) {
  pid_ = fork();
  if (pid_ != 0) return;
  setpgid(0, 0);
  const int file = open(output.c_str(), O_WRONLY | O_CREAT | O_APPEND, 0600);
  dup2(file, STDOUT_FILENO);
  setenv("XDG_CONFIG_HOME", settings.c_str(), 1);
  execl(VELUMAR_PROGRAM, VELUMAR_PROGRAM, "--settings-dir", settings.c_str(),
        "--chart-argument=--state", nullptr);
  _exit(127);
}

RunningProgram::~RunningProgram() {
  if (!Ended()) {
    kill(pid_, SIGKILL);
    waitpid(pid_, nullptr, 0);
  }
  // The chart program has its own session.
  for (const pid_t chart : ProcessesOf("MSWIN.EXE", "XDG_CONFIG_HOME=" + settings_.string())) {
    kill(chart, SIGKILL);
  }
}

bool RunningProgram::Ended() {
  if (ended_) return true;
  int status = 0;
  if (waitpid(pid_, &status, WNOHANG) != pid_) return false;
  ended_ = true;
  exit_code_ = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  return true;
}

std::vector<nlohmann::json> RunningProgram::States() const {
  std::vector<nlohmann::json> states;
  std::ifstream in(output_);
  for (std::string line; std::getline(in, line);) {
    nlohmann::json state = nlohmann::json::parse(line, nullptr, false);
    if (state.is_object() && state.contains("event")) states.push_back(std::move(state));
  }
  return states;
}

}  // namespace velumar
