#include "shell/support_page.h"

#include <filesystem>

#include "base/paths.h"

namespace velumar {

namespace {

// Beside the program as it is built, with the documentation once it is installed.
std::string OwnPage(const std::string& program_folder) {
  const std::filesystem::path folder = NativePath(program_folder);
  const std::filesystem::path built = folder / "support.html";
  if (std::filesystem::exists(built)) return PathText(built);
  return PathText((folder / "../share/doc/velumar/support.html").lexically_normal());
}

}  // namespace

void OpenSupportPage(const Platform& platform) {
  platform.programs.OpenInBrowser(
      platform.settings.Read("DonateUrl").value_or(OwnPage(platform.program_folder)));
}

}  // namespace velumar
