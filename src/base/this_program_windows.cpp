#include "base/this_program.h"

#include <windows.h>

#include <array>
#include <filesystem>

#include "base/paths.h"

namespace velumar {

std::string ThisProgram() {
  std::array<wchar_t, 1024> file{};
  ::GetModuleFileNameW(nullptr, file.data(), static_cast<DWORD>(file.size() - 1));
  return PathText(std::filesystem::path(file.data()).stem()) + " (process " +
         std::to_string(::GetCurrentProcessId()) + ")";
}

}  // namespace velumar
