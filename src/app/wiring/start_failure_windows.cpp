#include <windows.h>

#include <iostream>

#include "app/wiring/start_failure.h"
#include "base/windows_text.h"

namespace velumar {

namespace {

// Started from the menu or by a double click, the program has none.
bool HasErrorOutput() {
  const HANDLE output = ::GetStdHandle(STD_ERROR_HANDLE);
  return output != nullptr && output != INVALID_HANDLE_VALUE &&
         ::GetFileType(output) != FILE_TYPE_UNKNOWN;
}

}  // namespace

void TellStartFailure(const std::string& why) {
  if (HasErrorOutput()) {
    std::cerr << "velumar: " << why << std::endl;
  } else {
    ::MessageBoxW(nullptr, WideText(why).c_str(), L"Velumar", MB_OK | MB_ICONERROR);
  }
}

}  // namespace velumar
