#include "platform/system.h"

#include <windows.h>
// Needs the names of windows.h.
#include <shellapi.h>

#include <stdexcept>

#include "base/handle_windows.h"
#include "base/windows_text.h"
#include "platform/command_line.h"
#include "platform/process.h"
#include "platform/windows/programs.h"

namespace velumar {

namespace {

[[noreturn]] void FailToStart(const std::string& program, DWORD code) {
  throw std::runtime_error("The program " + program +
                           " could not be started: " + SystemErrorText(code));
}

}  // namespace

// Backslashes are special only before a quote, where each is doubled.
std::wstring QuotedArgument(std::string_view argument) {
  const std::wstring text = WideText(argument);
  if (!text.empty() && text.find_first_of(L" \t\"") == std::wstring::npos) return text;
  std::wstring quoted = L"\"";
  std::size_t backslashes = 0;
  for (const wchar_t c : text) {
    if (c == L'"') quoted.append(backslashes + 1, L'\\');
    backslashes = c == L'\\' ? backslashes + 1 : 0;
    quoted += c;
  }
  quoted.append(backslashes, L'\\');
  return quoted + L'"';
}

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

void SystemPrograms::EndProcess() { EndProcessAtOnce(0); }

}  // namespace velumar
