#include "platform/qt/registry_file.h"

#include "support/scratch_folder.h"

namespace velumar {
namespace {

constexpr RegistryRoot kUser = RegistryRoot::kCurrentUser;

TEST(RegistryFile, DamagedValuesOfAnEarlierVersionAreErrorsAndSoIsAFileThatCantBeWritten) {
  const ScratchFolder folder;
  const std::string damaged = "[HKEY_CURRENT_USER\\K]\na=dword:12\nb=C:\\plain\nc=binary:0g\n";
  WriteFile(folder / "registry", damaged);
  FileRegistry registry(folder / "registry");
  RegistryKey key = 0;
  ASSERT_EQ(registry.OpenKey(kUser, "K", Registry::kRead | Registry::kWrite, key), 0);
  RegistryType type{};
  std::string bytes;
  for (const char* const name : {"a", "b", "c"}) {
    EXPECT_EQ(registry.QueryValue(key, name, type, bytes), 1009) << name;
  }
  EXPECT_EQ(ReadFile(folder / "registry"), damaged);
  const std::string number("\x2A\0\0\xFF", 4);
  EXPECT_EQ(registry.SetValue(key, "Count", RegistryType::kDWord, number), 0);
  EXPECT_THAT(ReadFile(folder / "registry.ini"), testing::HasSubstr("K\\Count=dword:ff00002a\n"));

  FileRegistry unwritable(folder / "registry/registry");
  EXPECT_EQ(unwritable.CreateKey(kUser, "K"), 1013);
  EXPECT_EQ(unwritable.OpenKey(kUser, "K", Registry::kRead, key), 2);
}

}  // namespace
}  // namespace velumar
