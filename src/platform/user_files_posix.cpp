#include "platform/user_files_posix.h"

#include <pwd.h>
#include <unistd.h>

#include <cstdlib>
#include <system_error>

namespace velumar {

namespace fs = std::filesystem;

namespace {

fs::path Environment(const char* name) {
  const char* const text = std::getenv(name);
  return text == nullptr ? fs::path() : fs::path(text);
}

fs::path HomeFolder() {
  fs::path home = Environment("HOME");
  if (home.is_absolute()) return home;
  const passwd* const user = ::getpwuid(::getuid());
  return user == nullptr ? fs::current_path() : fs::path(user->pw_dir);
}

}  // namespace

fs::path UserFile(std::string_view name) {
  fs::path folder = Environment("XDG_CONFIG_HOME");
  // A relative folder is to be passed over.
  if (!folder.is_absolute()) folder = HomeFolder() / ".config";
  return folder / "velumar" / name;
}

fs::path LedgerFile(const fs::path& program_folder) {
  constexpr const char* kName = "Portfolio.mdb";
  if (::access(program_folder.c_str(), W_OK) == 0) return program_folder / kName;
  fs::path folder = Environment("XDG_DATA_HOME");
  if (!folder.is_absolute()) folder = HomeFolder() / ".local" / "share";
  folder /= "velumar";
  std::error_code told_by_the_ledger;
  fs::create_directories(folder, told_by_the_ledger);
  return folder / kName;
}

}  // namespace velumar
