#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/services.h"

namespace velumar {

// This process, the computer and its programs.

// The arguments of this process without its name, as UTF-8.
std::vector<std::string> ProgramArguments(int argc, char** argv);

// Returns true if an argument asks for help or the version, which need no display.
bool AsksForHelp(int argument_count, const char* const* arguments);

// Standard streams pass bytes through unchanged, line ends too; a console shows them as UTF-8.
void UsePlainStreams();

// True if standard error is shown on a terminal.
bool ErrorsGoToTerminal();

// Makes writing to a pipe that nobody reads fail instead of ending the process.
void IgnoreClosedPipes();

// Ends this process at once without destructors; what was printed is flushed.
[[noreturn]] void EndProcessAtOnce(int code);

// The clock of this computer, in its time zone, which may change while the program runs.
class SystemClock : public WallClock {
 public:
  std::int32_t Today() const override;
  std::string UtcMoment() const override;
  std::string LocalMoment(const std::string& utc) const override;
};

// The user's own date format, from wherever this system keeps it.
std::unique_ptr<LocaleInfo> SystemLocale();

// Starts programs that outlive this process; on a system with consoles they print where this one
// does.
class SystemPrograms : public Programs {
 public:
  // `extra_arguments` are appended to every command line.
  explicit SystemPrograms(std::vector<std::string> extra_arguments = {})
      : extra_arguments_(std::move(extra_arguments)) {}

  void Start(std::string_view command_line) override;
  void OpenInBrowser(std::string_view address) override;
  [[noreturn]] void EndProcess() override { EndProcessAtOnce(0); }

 private:
  std::vector<std::string> extra_arguments_;
};

// Splits a command line into the program and its arguments. Everything up to the last "MSWIN.EXE"
// is the program's path, blanks included. Without that name the path ends at the first blank, or at
// the closing quote if it begins with one. The path gets the system's own separators.
std::vector<std::string> SplitCommandLine(std::string_view command_line);

}  // namespace velumar
