#include "e2e/processes.h"

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace velumar {

namespace {

// A file of the system, such as a process's environment, has no size.
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

void KillProcesses(const std::string& name, const std::string& variable) {
  for (const pid_t process : ProcessesOf(name, variable)) kill(process, SIGKILL);
}

std::vector<std::string> OutputOf(const std::string& command) {
  std::vector<std::string> lines(1);
  FILE* const output = popen((command + " 2>/dev/null </dev/null").c_str(), "r");
  if (output == nullptr) return {};
  for (int c = std::fgetc(output); c != EOF; c = std::fgetc(output)) {
    if (c == '\n') {
      lines.emplace_back();
    } else if (c != '\r') {
      lines.back() += static_cast<char>(c);
    }
  }
  pclose(output);
  if (lines.back().empty()) lines.pop_back();
  return lines;
}

}  // namespace velumar
