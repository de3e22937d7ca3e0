#include "platform/chart_program.h"

#include <stdexcept>

#include "platform/qt/registry_file.h"
#include "support/scratch_folder.h"

namespace velumar {
namespace {

constexpr RegistryRoot kCurrentUser = RegistryRoot::kCurrentUser;

std::string Text(Registry& registry, const std::string& sub_key, std::string_view name) {
  RegistryKey key = 0;
  if (registry.OpenKey(kCurrentUser, sub_key, Registry::kRead, key) != 0) return "no key";
  RegistryType type{};
  std::string text;
  const long code = registry.QueryValue(key, name, type, text);
  registry.CloseKey(key);
  return code == 0 ? text : "no value";
}

TEST(ChartProgramKeys, AreMadeOnceAndFollowTheProgram) {
  const ScratchFolder folder;
  const std::string paths = "Software\\Equis\\Common\\8.0\\File Paths";
  FileRegistry registry(folder / "registry");
  EnsureChartProgramKeys(registry, "/first");
  EXPECT_EQ(Text(registry, paths, "ProgramPath"), "/first");
  // Moved: nothing lies in the first folder.
  EnsureChartProgramKeys(registry, "/second");
  EXPECT_EQ(Text(registry, paths, "ProgramPath"), "/second");
  // What the trader chose is kept.
  WriteFile(folder / "MSWIN.EXE", "");
  const std::string chosen = folder.Path().string();
  RegistryKey key = 0;
  ASSERT_EQ(registry.OpenKey(kCurrentUser, paths, Registry::kWrite, key), 0);
  ASSERT_EQ(registry.SetValue(key, "ProgramPath", RegistryType::kString, chosen), 0);
  EnsureChartProgramKeys(registry, "/third");
  EXPECT_EQ(Text(registry, paths, "ProgramPath"), chosen);
}

TEST(ChartProgramKeys, FollowANewerVersion) {
  const ScratchFolder folder;
  FileRegistry registry(folder / "registry");
  ASSERT_EQ(registry.CreateKey(RegistryRoot::kLocalMachine,
                               "SOFTWARE\\Equis International\\MetaStock Professional\\9.0"),
            0);
  EnsureChartProgramKeys(registry, "/nine");
  EXPECT_EQ(Text(registry, "Software\\Equis\\Common\\9.0\\File Paths", "ProgramPath"), "/nine");
  EXPECT_EQ(Text(registry, "Software\\Equis\\Common\\8.0\\File Paths", "ProgramPath"), "no key");
  WriteFile(folder / "file", "");
  FileRegistry unwritable(folder / "file/registry");
  EXPECT_THROW(EnsureChartProgramKeys(unwritable, "/x"), std::runtime_error);
}

}  // namespace
}  // namespace velumar
