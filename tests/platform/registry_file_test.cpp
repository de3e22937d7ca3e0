#include "platform/posix/registry_file.h"

#include "platform/temp_folder.h"

namespace velumar {
namespace {

using ::testing::HasSubstr;

constexpr RegistryRoot kUser = RegistryRoot::kCurrentUser;
constexpr std::uint32_t kBoth = Registry::kRead | Registry::kWrite;

// A key opened for one test.
RegistryKey Opened(Registry& registry, std::string_view sub_key, std::uint32_t access = kBoth) {
  RegistryKey key = 0;
  EXPECT_EQ(registry.OpenKey(kUser, sub_key, access, key), 0) << sub_key;
  return key;
}

long Opens(Registry& registry, RegistryRoot root, std::string_view sub_key) {
  RegistryKey key = 0;
  const long code = registry.OpenKey(root, sub_key, Registry::kRead, key);
  registry.CloseKey(key);
  return code;
}

TEST(RegistryFile, ValuesOfAllTypesComeBackInTheNextProcess) {
  const TempFolder folder;
  const std::vector<std::tuple<std::string, RegistryType, std::string>> values{
      {"ProgramPath", RegistryType::kString, "C:\\Program Files\\Börse"},
      {"", RegistryType::kString, "the key's own value"},
      {"#=[x", RegistryType::kString, std::string("zero\0 and\nline", 14)},
      {"Count", RegistryType::kDWord, std::string("\x2A\0\0\xFF", 4)},
      {"Blob", RegistryType::kBinary, std::string("\0\n\xFF=", 4)},
      {"Nothing", RegistryType::kBinary, ""},
  };
  {
    FileRegistry registry(folder / "registry");
    ASSERT_EQ(registry.CreateKey(kUser, "Software\\A b\\[9]"), 0);
    const RegistryKey key = Opened(registry, "Software\\A b\\[9]");
    for (const auto& [name, type, bytes] : values) {
      ASSERT_EQ(registry.SetValue(key, name, type, bytes), 0) << name;
    }
  }
  FileRegistry registry(folder / "registry");
  const RegistryKey key = Opened(registry, "software\\a B\\[9]", Registry::kRead);
  for (const auto& [name, type, bytes] : values) {
    RegistryType read_type{};
    std::string read;
    ASSERT_EQ(registry.QueryValue(key, name, read_type, read), 0) << name;
    EXPECT_EQ(read_type, type) << name;
    EXPECT_EQ(read, bytes) << name;
  }
  EXPECT_THAT(ReadFile(folder / "registry"), HasSubstr("Count=dword:ff00002a\n"));
}

TEST(RegistryFile, KeysExistWithTheirParentsUntilTheyAreDeleted) {
  const TempFolder folder;
  FileRegistry registry(folder / "registry");
  EXPECT_EQ(Opens(registry, kUser, ""), 0);
  EXPECT_EQ(Opens(registry, kUser, "Software"), 2);
  EXPECT_EQ(registry.DeleteKey(kUser, "Software"), 2);
  ASSERT_EQ(registry.CreateKey(kUser, "Software\\Charts\\8.0"), 0);
  EXPECT_EQ(Opens(registry, kUser, "Software\\Charts"), 0);
  EXPECT_EQ(Opens(registry, kUser, "Software\\Chart"), 2);
  EXPECT_EQ(Opens(registry, RegistryRoot::kLocalMachine, "Software\\Charts"), 2);
  EXPECT_EQ(registry.DeleteKey(kUser, "Software"), 5);
  EXPECT_EQ(registry.DeleteKey(kUser, "SOFTWARE\\charts\\8.0"), 0);
  EXPECT_EQ(Opens(registry, kUser, "Software\\Charts\\8.0"), 2);
  EXPECT_EQ(Opens(registry, kUser, "Software\\Charts"), 0);
  EXPECT_EQ(registry.DeleteKey(kUser, "Software\\Charts"), 0);
  EXPECT_EQ(Opens(registry, kUser, "Software"), 0);
  EXPECT_EQ(registry.DeleteKey(kUser, ""), 5);
}

TEST(RegistryFile, CodesTellWhatWentWrong) {
  const TempFolder folder;
  FileRegistry registry(folder / "registry");
  RegistryKey key = 0;
  RegistryType type{};
  std::string bytes;
  ASSERT_EQ(registry.CreateKey(kUser, "K"), 0);
  EXPECT_EQ(registry.OpenKey(RegistryRoot::kNone, "K", kBoth, key), 6);
  const RegistryKey reading = Opened(registry, "K", Registry::kRead);
  EXPECT_EQ(registry.QueryValue(reading, "missing", type, bytes), 2);
  EXPECT_EQ(registry.SetValue(reading, "v", RegistryType::kString, "x"), 5);
  EXPECT_EQ(registry.DeleteValue(reading, "v"), 5);
  const RegistryKey writing = Opened(registry, "K");
  EXPECT_EQ(registry.SetValue(writing, "v", RegistryType::kDWord, "x"), 87);
  EXPECT_EQ(registry.DeleteValue(writing, "v"), 2);
  EXPECT_EQ(registry.SetValue(writing, "v", RegistryType::kString, "x"), 0);
  EXPECT_EQ(registry.DeleteValue(writing, "V"), 0);
  EXPECT_EQ(registry.QueryValue(writing, "v", type, bytes), 2);
  registry.CloseKey(writing);
  EXPECT_EQ(registry.SetValue(writing, "v", RegistryType::kString, "x"), 6);
  EXPECT_EQ(registry.QueryValue(writing, "v", type, bytes), 6);
}

TEST(RegistryFile, AValueOfUnknownFormIsDamageButNotLost) {
  const TempFolder folder;
  const std::string text = "[HKEY_CURRENT_USER\\K]\na=dword:12\nb=C:\\plain\nc=binary:0g\n";
  WriteFile(folder / "registry", text);
  FileRegistry registry(folder / "registry");
  const RegistryKey key = Opened(registry, "K");
  RegistryType type{};
  std::string bytes;
  for (const char* const name : {"a", "b", "c"}) {
    EXPECT_EQ(registry.QueryValue(key, name, type, bytes), 1009) << name;
  }
  EXPECT_EQ(ReadFile(folder / "registry"), text);
}

TEST(RegistryFile, AFileThatCantBeWrittenIsTold) {
  const TempFolder folder;
  WriteFile(folder / "in the way", "");
  FileRegistry registry(folder / "in the way/registry");
  EXPECT_EQ(registry.CreateKey(kUser, "K"), 1013);
  EXPECT_EQ(Opens(registry, kUser, "K"), 2);
}

}  // namespace
}  // namespace velumar
