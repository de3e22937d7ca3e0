#include "platform/user_files.h"

#include <pwd.h>
#include <unistd.h>

#include <cstdlib>
#include <string>
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

// The samples that an installed program shares with all users; empty if they are next to the
// program, as in the build folder.
fs::path SharedSamples(const fs::path& program_folder) {
  if (fs::exists(program_folder / "samples")) return {};
  fs::path samples = program_folder / ".." / ".." / "share" / "velumar" / "samples";
  return fs::exists(samples) ? samples : fs::path();
}

// "velumar" under $XDG_DATA_HOME, else ~/.local/share.
fs::path UserDataFolder() {
  fs::path folder = Environment("XDG_DATA_HOME");
  // The standard says to ignore relative paths.
  if (!folder.is_absolute()) folder = HomeFolder() / ".local" / "share";
  return folder / "velumar";
}

}  // namespace

fs::path UserFile(std::string_view name) {
  fs::path folder = Environment("XDG_CONFIG_HOME");
  // The standard says to ignore relative paths.
  if (!folder.is_absolute()) folder = HomeFolder() / ".config";
  return folder / "velumar" / name;
}

fs::path LedgerFile(const fs::path& program_folder) {
  constexpr const char* kName = "Portfolio.mdb";
  const bool own_folder =
      SharedSamples(program_folder).empty() && ::access(program_folder.c_str(), W_OK) == 0;
  if (own_folder) return program_folder / kName;
  const fs::path folder = UserDataFolder();
  std::error_code reported_by_the_ledger;
  fs::create_directories(folder, reported_by_the_ledger);
  return folder / kName;
}

fs::path SampleDirectory(const fs::path& program_folder) {
  const fs::path shared = SharedSamples(program_folder);
  if (shared.empty()) return program_folder / "samples";
  return OwnCopy(shared, UserDataFolder() / "samples");
}

}  // namespace velumar
