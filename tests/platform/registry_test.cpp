// The system's registry; system_driver.h opens it.
#include "system_driver.h"

namespace velumar {
namespace {

constexpr RegistryRoot kUser = RegistryRoot::kCurrentUser;

struct RegistryTest : testing::Test {
  RegistryDriver driver;
  std::unique_ptr<Registry> registry = driver.Open();
  const std::string root = RegistryDriver::kRoot;
  std::string text;
};

TEST_F(RegistryTest, KeepsTextsForTheNextProgram) {
  const std::string key = root + "\\B\u00f6rse [9]";
  const std::vector<std::pair<std::string, std::string>> values{
      {"ProgramPath", "C:\\Program Files\\B\u00f6rse \u20ac"},
      {"", "the key's own value"},
      {"#=[x", std::string(3000, 'x')},
      {"Empty", ""},
  };
  ASSERT_EQ(registry->CreateKey(kUser, key), 0);
  for (const auto& [name, value] : values) {
    ASSERT_EQ(registry->WriteText(key, name, value), 0) << name;
  }
  ASSERT_EQ(registry->CreateKey(kUser, key), 0);
  registry = driver.Open();
  for (const auto& [name, value] : values) {
    ASSERT_EQ(registry->ReadText(root + "\\b\u00f6rse [9]", name, text), 0) << name;
    EXPECT_EQ(text, value) << name;
  }
}

TEST_F(RegistryTest, WritesOnlyToKeysThatExist) {
  EXPECT_EQ(registry->WriteText(root + "\\Charts", "v", "x"), 2);
  EXPECT_EQ(registry->ReadText(root + "\\Charts", "v", text), 2);
  EXPECT_FALSE(registry->HasKey(kUser, root));
  ASSERT_EQ(registry->CreateKey(kUser, root + "\\Charts\\8.0"), 0);
  EXPECT_TRUE(registry->HasKey(kUser, root + "\\CHARTS"));
  EXPECT_FALSE(registry->HasKey(kUser, root + "\\Chart"));
  EXPECT_FALSE(registry->HasKey(RegistryRoot::kLocalMachine, root + "\\Charts"));
  EXPECT_EQ(registry->WriteText(root + "\\Charts", "v", "x"), 0);
  EXPECT_EQ(registry->ReadText(root + "\\Charts", "w", text), 2);
}

}  // namespace
}  // namespace velumar
