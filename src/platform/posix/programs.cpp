#include "platform/programs.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <stdexcept>
#include <system_error>

#include "base/descriptor_posix.h"
#include "platform/command_line.h"
#include "platform/process_end.h"

namespace velumar {

namespace fs = std::filesystem;

namespace {

[[noreturn]] void FailToStart(const std::string& program, int error) {
  const std::string why = error == ENOEXEC ? "this system can't run that kind of file"
                                           : std::generic_category().message(error);
  throw std::runtime_error("the program " + program + " can't be started: " + why);
}

struct Pipe {
  Descriptor read;
  Descriptor write;
};

Pipe MakePipe(const std::string& program) {
  std::array<int, 2> ends{};
  if (::pipe2(ends.data(), O_CLOEXEC) != 0) FailToStart(program, errno);
  return {Descriptor(ends[0]), Descriptor(ends[1])};
}

// Runs between fork and exec, where only calls that are safe in signal handlers may stand. Gives
// the error of the exec to the other end of the pipe; a success closes it.
[[noreturn]] void Become(char* const* arguments, int report) {
  const int nothing = ::open("/dev/null", O_RDONLY);
  if (nothing >= 0) ::dup2(nothing, STDIN_FILENO);
  ::close_range(STDERR_FILENO + 1, ~0U, CLOSE_RANGE_CLOEXEC);
  sigset_t none;
  sigemptyset(&none);
  ::sigprocmask(SIG_SETMASK, &none, nullptr);
  ::signal(SIGPIPE, SIG_DFL);
  ::execv(arguments[0], arguments);
  const int error = errno;
  [[maybe_unused]] const ssize_t told = ::write(report, &error, sizeof error);
  ::_exit(127);
}

// The child in between ends at once, so the program belongs to nobody here and leaves no zombie.
void ForkApart(char* const* arguments, const Descriptor& report, const std::string& program) {
  const pid_t between = ::fork();
  if (between < 0) FailToStart(program, errno);
  if (between == 0) {
    ::setsid();
    const pid_t child = ::fork();
    if (child == 0) Become(arguments, report.Get());
    const int error = errno;
    if (child < 0) {
      [[maybe_unused]] const ssize_t told = ::write(report.Get(), &error, sizeof error);
    }
    ::_exit(0);
  }
  while (::waitpid(between, nullptr, 0) < 0 && errno == EINTR) {
  }
}

void StartApart(std::vector<std::string> command) {
  const std::string program = command.front();
  std::vector<char*> arguments;
  arguments.reserve(command.size() + 1);
  for (std::string& argument : command) arguments.push_back(argument.data());
  arguments.push_back(nullptr);
  Pipe pipe = MakePipe(program);
  ForkApart(arguments.data(), pipe.write, program);
  pipe.write.Close();
  int error = 0;
  ssize_t bytes = 0;
  do {
    bytes = ::read(pipe.read.Get(), &error, sizeof error);
  } while (bytes < 0 && errno == EINTR);
  if (bytes == sizeof error) FailToStart(program, error);
}

std::string FindInPath(std::string_view name) {
  const char* const path = std::getenv("PATH");
  std::string_view folders = path == nullptr ? "/usr/local/bin:/usr/bin:/bin" : path;
  while (!folders.empty()) {
    const std::size_t end = std::min(folders.find(':'), folders.size());
    std::string file = (fs::path(folders.substr(0, end)) / name).string();
    if (::access(file.c_str(), X_OK) == 0) return file;
    folders.remove_prefix(std::min(end + 1, folders.size()));
  }
  return {};
}

}  // namespace

void SystemPrograms::Start(std::string_view command_line) {
  std::vector<std::string> command = SplitCommandLine(command_line);
  command.insert(command.end(), extra_arguments_.begin(), extra_arguments_.end());
  StartApart(std::move(command));
}

void SystemPrograms::OpenInBrowser(std::string_view address) {
  const std::string opener = FindInPath("xdg-open");
  if (opener.empty()) {
    throw std::runtime_error("there is no program to open " + std::string(address) +
                             " with: xdg-open isn't installed");
  }
  StartApart({opener, std::string(address)});
}

void SystemPrograms::EndProcess() { EndProcessAtOnce(0); }

void EndProcessAtOnce(int code) {
  std::cout.flush();
  std::fflush(nullptr);
  ::_exit(code);
}

}  // namespace velumar
