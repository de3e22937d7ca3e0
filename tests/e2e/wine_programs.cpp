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
  // Wine complains there about each drive without a label.
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

std::vector<std::string> WineAnswer(const std::string& arguments) {
  return OutputOf("timeout 60 " + Wine() + " " + arguments);
}

std::string WindowsPath(const std::string& path) {
  std::string name = "Z:" + path;
  std::replace(name.begin(), name.end(), '/', '\\');
  return name;
}

}  // namespace velumar
