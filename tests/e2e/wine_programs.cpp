#include "e2e/wine_programs.h"

#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "e2e/processes.h"

namespace velumar {

namespace {

std::string Wine() {
  const char* const wine = std::getenv("VELUMAR_WINE");
  return wine == nullptr ? "wine" : wine;
}

// Others may run the same program in a prefix of theirs.
std::string OurPrefix() {
  const char* const prefix = std::getenv("WINEPREFIX");
  return std::string("WINEPREFIX=") + (prefix == nullptr ? "" : prefix);
}

}  // namespace

WineDesktop::WineDesktop(const std::string& program) {
  pid_ = fork();
  if (pid_ != 0) return;
  const std::string wine = Wine();
  // Wine tells there of each drive without a label, once for each look of a file dialog.
  std::freopen("/dev/null", "w", stderr);
  execl(wine.c_str(), wine.c_str(), "explorer", "/desktop=velumar,1600x1000",
        WindowsPath(program).c_str(), nullptr);
  _exit(127);
}

WineDesktop::~WineDesktop() {
  std::system("/usr/lib/wine/wineserver64 -k");
  waitpid(pid_, nullptr, 0);
}

bool WineDesktop::Runs(const std::string& name) { return !ProcessesOf(name, OurPrefix()).empty(); }

void WineDesktop::Kill(const std::string& name) { KillProcesses(name, OurPrefix()); }

std::vector<std::string> WineAnswer(const std::string& arguments) {
  std::vector<std::string> lines(1);
  const std::string command = "timeout 60 " + Wine() + " " + arguments + " 2>/dev/null </dev/null";
  FILE* const told = popen(command.c_str(), "r");
  if (told == nullptr) return {};
  for (int c = std::fgetc(told); c != EOF; c = std::fgetc(told)) {
    if (c == '\n') {
      lines.emplace_back();
    } else if (c != '\r') {
      lines.back() += static_cast<char>(c);
    }
  }
  pclose(told);
  if (lines.back().empty()) lines.pop_back();
  return lines;
}

std::string RegistryText(const std::string& key, const std::string& name) {
  constexpr const char* kType = "    REG_SZ    ";
  for (const std::string& line : WineAnswer("reg query '" + key + "' /v '" + name + "'")) {
    const std::size_t type = line.find(kType);
    if (type != std::string::npos) return line.substr(type + std::string(kType).size());
  }
  return {};
}

std::string WindowsPath(const std::string& path) {
  std::string name = "Z:" + path;
  std::replace(name.begin(), name.end(), '/', '\\');
  return name;
}

}  // namespace velumar
