#include "platform/process.h"

#include <fcntl.h>
#include <io.h>
#include <windows.h>
// Needs the names of windows.h.
#include <shellapi.h>

#include <cstdio>
#include <cstdlib>
#include <iostream>

#include "base/windows_text.h"

namespace velumar {

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

// Writing to them fails here anyway.
void IgnoreClosedPipes() {}

void EndProcessAtOnce(int code) {
  std::cout.flush();
  std::fflush(nullptr);
  ::TerminateProcess(::GetCurrentProcess(), static_cast<UINT>(code));
  std::abort();
}

}  // namespace velumar
