#include <date/tz.h>
#include <windows.h>

#include <array>
#include <filesystem>
#include <string>

#include "base/paths.h"
#include "import/zone_database.h"

namespace velumar {

// This system has no zones of the usual names: they are in a folder next to the program.
void PrepareZones() {
  static const bool kPrepared = [] {
    std::array<wchar_t, 32768> program{};
    ::GetModuleFileNameW(nullptr, program.data(), static_cast<DWORD>(program.size() - 1));
    const std::filesystem::path folder = std::filesystem::path(program.data()).parent_path();
    date::set_install(PathText(folder / "tzdata"));
    return true;
  }();
  static_cast<void>(kPrepared);
}

}  // namespace velumar
