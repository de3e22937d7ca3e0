#include "platform/chart_program.h"

#include <stdexcept>

#include "platform/qt/registry_file.h"
#include "support/scratch_folder.h"

namespace velumar {
namespace {

std::string ProgramPath(Registry& registry, const std::string& version) {
  RegistryKey key = 0;
  RegistryType type{};
  std::string text = "none";
  registry.OpenKey(RegistryRoot::kCurrentUser,
                   "Software\\Equis\\Common\\" + version + "\\File Paths", Registry::kRead, key);
  registry.QueryValue(key, "ProgramPath", type, text);
  registry.CloseKey(key);
  return text;
}

TEST(ChartProgramKeys, FollowTheProgramsFolderAndVersion) {
  const ScratchFolder folder;
  FileRegistry registry(folder / "registry");
  EnsureChartProgramKeys(registry, "/first");
  EXPECT_EQ(ProgramPath(registry, "8.0"), "/first");
  // The program has moved: the first folder doesn't contain it.
  EnsureChartProgramKeys(registry, folder.Text());
  EXPECT_EQ(ProgramPath(registry, "8.0"), folder.Text());
  WriteFile(folder / "MSWIN.EXE", "");
  EnsureChartProgramKeys(registry, "/third");
  EXPECT_EQ(ProgramPath(registry, "8.0"), folder.Text()) << "a folder with the program stays";

  registry.CreateKey(RegistryRoot::kLocalMachine,
                     "SOFTWARE\\Equis International\\MetaStock Professional\\9.0");
  EnsureChartProgramKeys(registry, "/nine");
  EXPECT_EQ(ProgramPath(registry, "9.0"), "/nine");
  FileRegistry unwritable(folder / "MSWIN.EXE/registry");
  EXPECT_THROW(EnsureChartProgramKeys(unwritable, "/x"), std::runtime_error);
}

}  // namespace
}  // namespace velumar
