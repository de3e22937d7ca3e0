#include "platform/system.h"

#include <fcntl.h>
#include <io.h>
#include <windows.h>

// Needs the names of windows.h.
#include <shellapi.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <stdexcept>

#include "base/handle_windows.h"
#include "base/windows_text.h"

namespace velumar {

namespace {

// Empty if the system has no such text.
std::string LocaleText(LCTYPE what) {
  constexpr LCID kUser = LOCALE_USER_DEFAULT;
  const int length = ::GetLocaleInfoW(kUser, what, nullptr, 0);
  if (length <= 0) return {};
  std::wstring text(static_cast<std::size_t>(length), L' ');
  const int filled = ::GetLocaleInfoW(kUser, what, text.data(), length);
  if (filled <= 0) return {};
  text.resize(static_cast<std::size_t>(filled) - 1);
  return Utf8Text(text);
}

// The short date of the user's region settings, which may change while the program runs.
class WindowsLocale : public LocaleInfo {
 public:
  std::string DateSeparator() const override { return LocaleText(LOCALE_SDATE); }
  std::string ShortDatePattern() const override { return LocaleText(LOCALE_SSHORTDATE); }
};

std::string MomentText(const SYSTEMTIME& moment) {
  std::array<char, 64> text{};
  std::snprintf(text.data(), text.size(), "%04hu-%02hu-%02hu %02hu:%02hu:%02hu", moment.wYear,
                moment.wMonth, moment.wDay, moment.wHour, moment.wMinute, moment.wSecond);
  return text.data();
}

[[noreturn]] void FailToStart(const std::string& program, DWORD code) {
  throw std::runtime_error("The program " + program +
                           " could not be started: " + SystemErrorText(code));
}

}  // namespace

std::int32_t SystemClock::Today() const {
  SYSTEMTIME now{};
  ::GetLocalTime(&now);
  return now.wYear * 10000 + now.wMonth * 100 + now.wDay;
}

std::string SystemClock::UtcMoment() const {
  SYSTEMTIME now{};
  ::GetSystemTime(&now);
  return MomentText(now);
}

std::string SystemClock::LocalMoment(const std::string& utc) const {
  SYSTEMTIME moment{};
  SYSTEMTIME local{};
  const int read =
      std::sscanf(utc.c_str(), "%4hu-%2hu-%2hu %2hu:%2hu:%2hu", &moment.wYear, &moment.wMonth,
                  &moment.wDay, &moment.wHour, &moment.wMinute, &moment.wSecond);
  constexpr int kFields = 6;
  if (read != kFields || !::SystemTimeToTzSpecificLocalTime(nullptr, &moment, &local)) return utc;
  return MomentText(local);
}

std::unique_ptr<LocaleInfo> SystemLocale() { return std::make_unique<WindowsLocale>(); }

void SystemPrograms::Start(std::string_view command_line) {
  std::vector<std::string> command = SplitCommandLine(command_line);
  command.insert(command.end(), extra_arguments_.begin(), extra_arguments_.end());
  // Always in quotes, so that a path with blanks can't start another program.
  std::wstring line = L"\"" + WideText(command.front()) + L"\"";
  for (std::size_t i = 1; i < command.size(); ++i) line += L" " + QuotedArgument(command[i]);
  STARTUPINFOW startup{};
  startup.cb = sizeof startup;
  startup.dwFlags = STARTF_USESHOWWINDOW;
  startup.wShowWindow = SW_SHOWNORMAL;
  PROCESS_INFORMATION started{};
  if (::CreateProcessW(WideText(command.front()).c_str(), line.data(), nullptr, nullptr, FALSE, 0,
                       nullptr, nullptr, &startup, &started) == 0) {
    FailToStart(command.front(), ::GetLastError());
  }
  const NativeHandle process = OwnedHandle(started.hProcess);
  const NativeHandle thread = OwnedHandle(started.hThread);
  // Its window may take the focus.
  ::AllowSetForegroundWindow(started.dwProcessId);
}

void SystemPrograms::OpenInBrowser(std::string_view address) {
  constexpr std::intptr_t kLastError = 32;
  const HINSTANCE answer =
      ::ShellExecuteW(nullptr, L"open", WideText(address).c_str(), nullptr, nullptr, SW_SHOWNORMAL);
  if (reinterpret_cast<std::intptr_t>(answer) > kLastError) return;
  throw std::runtime_error(std::string(address) +
                           " could not be opened: " + SystemErrorText(::GetLastError()));
}

std::vector<std::string> ProgramArguments(int, char**) {
  int count = 0;
  wchar_t** const words = ::CommandLineToArgvW(::GetCommandLineW(), &count);
  std::vector<std::string> arguments;
  for (int i = 1; words != nullptr && i < count; ++i) arguments.push_back(Utf8Text(words[i]));
  ::LocalFree(words);
  return arguments;
}

void UsePlainStreams() {
  for (std::FILE* const stream : {stdin, stdout, stderr}) _setmode(_fileno(stream), _O_BINARY);
  ::SetConsoleOutputCP(CP_UTF8);
}

bool ErrorsGoToTerminal() { return _isatty(_fileno(stderr)) != 0; }

// Writing to them fails here anyway.
void IgnoreClosedPipes() {}

void EndProcessAtOnce(int code) {
  std::cout.flush();
  std::fflush(nullptr);
  ::TerminateProcess(::GetCurrentProcess(), static_cast<UINT>(code));
  std::abort();
}

}  // namespace velumar
