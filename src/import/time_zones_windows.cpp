#include "import/time_zones.h"

#include <windows.h>
// The library comes after the system's header.
#include <date/tz.h>

#include <array>
#include <filesystem>

#include "base/paths.h"

namespace velumar {

namespace {

// Of this program.
std::filesystem::path ProgramFolder() {
  constexpr std::size_t kLongestPath = 32768;
  std::array<wchar_t, kLongestPath> file{};
  ::GetModuleFileNameW(nullptr, file.data(), static_cast<DWORD>(file.size()));
  return std::filesystem::path(file.data()).parent_path();
}

}  // namespace

void PrepareTimeZones() {
  static const bool kNamed = [] {
    date::set_install(PathText(ProgramFolder() / "tzdata"));
    return true;
  }();
  static_cast<void>(kNamed);
}

}  // namespace velumar
