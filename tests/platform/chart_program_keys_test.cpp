#include "platform/chart_program_keys.h"

#include <stdexcept>

#include "platform/posix/registry_file.h"
#include "platform/temp_folder.h"

namespace velumar {
namespace {

using ::testing::HasSubstr;

constexpr RegistryRoot kUser = RegistryRoot::kCurrentUser;

std::string Text(Registry& registry, const std::string& sub_key, std::string_view name) {
  RegistryKey key = 0;
  if (registry.OpenKey(kUser, sub_key, Registry::kRead, key) != 0) return "no key";
  RegistryType type{};
  std::string text;
  const long code = registry.QueryValue(key, name, type, text);
  registry.CloseKey(key);
  return code == 0 ? text : "no value";
}

void Set(Registry& registry, const std::string& sub_key, std::string_view name,
         std::string_view text) {
  RegistryKey key = 0;
  ASSERT_EQ(registry.OpenKey(kUser, sub_key, Registry::kWrite, key), 0);
  ASSERT_EQ(registry.SetValue(key, name, RegistryType::kString, text), 0);
  registry.CloseKey(key);
}

TEST(ChartProgramKeys, AreMadeOnceAndFollowTheProgram) {
  const TempFolder folder;
  const std::string paths = "Software\\Equis\\Common\\8.0\\File Paths";
  const std::string data = "Software\\Equis\\MetaStock Pro 8.0\\DataPath";
  FileRegistry registry(folder / "registry");
  EnsureChartProgramKeys(registry, "/first");
  EXPECT_EQ(Text(registry, paths, "ProgramPath"), "/first");
  EXPECT_EQ(Text(registry, data, "LastPath"), "");
  EXPECT_EQ(Text(registry, "Software\\Equis\\MetaStock Pro 8.0\\OpenFileData", "SmartChartsPath"),
            "");

  // Moved: nothing lies in the first folder.
  EnsureChartProgramKeys(registry, "/second");
  EXPECT_EQ(Text(registry, paths, "ProgramPath"), "/second");

  // The user's own choice, and what the setup window left.
  WriteFile(folder / "MSWIN.EXE", "");
  Set(registry, paths, "ProgramPath", folder.Path().string());
  Set(registry, data, "LastPath", "C:\\Data");
  EnsureChartProgramKeys(registry, "/third");
  EXPECT_EQ(Text(registry, paths, "ProgramPath"), folder.Path().string());
  EXPECT_EQ(Text(registry, data, "LastPath"), "C:\\Data");
}

TEST(ChartProgramKeys, FollowANewerVersion) {
  const TempFolder folder;
  FileRegistry registry(folder / "registry");
  ASSERT_EQ(registry.CreateKey(RegistryRoot::kLocalMachine,
                               "SOFTWARE\\Equis International\\MetaStock Professional\\9.0"),
            0);
  EnsureChartProgramKeys(registry, "/nine");
  EXPECT_EQ(Text(registry, "Software\\Equis\\Common\\9.0\\File Paths", "ProgramPath"), "/nine");
  EXPECT_EQ(Text(registry, "Software\\Equis\\Common\\8.0\\File Paths", "ProgramPath"), "no key");
}

TEST(ChartProgramKeys, ARegistryThatCantBeWrittenIsAnError) {
  const TempFolder folder;
  WriteFile(folder / "file", "");
  FileRegistry registry(folder / "file/registry");
  try {
    EnsureChartProgramKeys(registry, "/x");
    FAIL() << "no error";
  } catch (const std::runtime_error& error) {
    EXPECT_THAT(error.what(), HasSubstr("MetaStock Professional\\8.0"));
  }
}

}  // namespace
}  // namespace velumar
