#include "platform/user_files.h"

#include <windows.h>

#include <array>
#include <string>
#include <system_error>

namespace velumar {

namespace fs = std::filesystem;

namespace {

fs::path Environment(const wchar_t* name) {
  std::array<wchar_t, 32768> text{};
  const DWORD length =
      ::GetEnvironmentVariableW(name, text.data(), static_cast<DWORD>(text.size()));
  return fs::path(std::wstring(text.data(), length));
}

// This user's folder for Velumar.
fs::path UserFolder() {
  fs::path local = Environment(L"LOCALAPPDATA");
  if (!local.is_absolute()) local = Environment(L"USERPROFILE") / "AppData" / "Local";
  return local / "Velumar";
}

// Only creating a file shows whether one can be created.
bool CanWriteIn(const fs::path& folder) {
  const fs::path probe =
      folder / (".velumar-" + std::to_string(::GetCurrentProcessId()) + ".probe");
  const HANDLE handle =
      ::CreateFileW(probe.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                    FILE_ATTRIBUTE_TEMPORARY | FILE_FLAG_DELETE_ON_CLOSE, nullptr);
  if (handle == INVALID_HANDLE_VALUE) return false;
  ::CloseHandle(handle);
  return true;
}

// The samples that the installer puts there; empty if they are next to the program, as in the build
// folder or the unpacked archive.
fs::path InstalledSamples(const fs::path& program_folder) {
  if (fs::exists(program_folder / "samples")) return {};
  fs::path samples = program_folder / "share" / "samples";
  return fs::exists(samples) ? samples : fs::path();
}

}  // namespace

fs::path UserFile(std::string_view name) { return UserFolder() / name; }

fs::path LedgerFile(const fs::path& program_folder) {
  constexpr const char* kName = "Portfolio.mdb";
  const bool own_folder = InstalledSamples(program_folder).empty() && CanWriteIn(program_folder);
  if (own_folder) return program_folder / kName;
  std::error_code reported_by_the_ledger;
  fs::create_directories(UserFolder(), reported_by_the_ledger);
  return UserFolder() / kName;
}

fs::path SampleDirectory(const fs::path& program_folder) {
  const fs::path portable = program_folder / "samples";
  const fs::path installed = InstalledSamples(program_folder);
  if (installed.empty() && (!fs::exists(portable) || CanWriteIn(portable))) return portable;
  const fs::path shared = installed.empty() ? portable : installed;
  return OwnCopy(shared, UserFolder() / "samples");
}

}  // namespace velumar
