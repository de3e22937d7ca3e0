// The system's registry; system_driver.h opens it.
#include "system_driver.h"

namespace velumar {
namespace {

constexpr RegistryRoot kUserRoot = RegistryRoot::kCurrentUser;
constexpr std::uint32_t kBoth = Registry::kRead | Registry::kWrite;

struct RegistryTest : testing::Test {
  RegistryKey Opened(std::string_view sub_key, std::uint32_t access = kBoth) {
    RegistryKey key = 0;
    EXPECT_EQ(registry->OpenKey(kUserRoot, sub_key, access, key), 0) << sub_key;
    return key;
  }
  long Opens(std::string_view sub_key, RegistryRoot from = kUserRoot) {
    RegistryKey key = 0;
    const long code = registry->OpenKey(from, sub_key, Registry::kRead, key);
    registry->CloseKey(key);
    return code;
  }

  RegistryDriver driver;
  std::unique_ptr<Registry> registry = driver.Open();
  const std::string root = RegistryDriver::kRoot;
};

TEST_F(RegistryTest, KeepsValuesOfAllTypes) {
  const std::string path = root + "\\B\u00f6rse [9]";
  const std::vector<std::tuple<std::string, RegistryType, std::string>> values{
      {"ProgramPath", RegistryType::kString, "C:\\Program Files\\B\u00f6rse \u20ac"},
      {"", RegistryType::kString, "the key's own value"},
      {"#=[x", RegistryType::kString, std::string(3000, 'x')},
      {"Empty", RegistryType::kString, ""},
      {"Count", RegistryType::kDWord, std::string("\x2A\0\0\xFF", 4)},
      {"Blob", RegistryType::kBinary, std::string("\0\n\xFF=", 4)},
      {"Nothing", RegistryType::kBinary, ""},
  };
  ASSERT_EQ(registry->CreateKey(kUserRoot, path), 0);
  const RegistryKey writing = Opened(path);
  for (const auto& [name, type, bytes] : values) {
    ASSERT_EQ(registry->SetValue(writing, name, type, bytes), 0) << name;
  }
  registry->CloseKey(writing);
  registry = driver.Open();
  const RegistryKey key = Opened(root + "\\b\u00f6rse [9]", Registry::kRead);
  for (const auto& [name, type, bytes] : values) {
    RegistryType read_type{};
    std::string read;
    ASSERT_EQ(registry->QueryValue(key, name, read_type, read), 0) << name;
    EXPECT_EQ(read_type, type) << name;
    EXPECT_EQ(read, bytes) << name;
  }
}

TEST_F(RegistryTest, CreatesAndDeletesKeysWithTheirParents) {
  EXPECT_EQ(registry->DeleteKey(kUserRoot, root), 2);
  ASSERT_EQ(registry->CreateKey(kUserRoot, root + "\\Charts\\8.0"), 0);
  EXPECT_EQ(Opens(root + "\\Charts"), 0);
  EXPECT_EQ(Opens(root + "\\Chart"), 2);
  EXPECT_EQ(Opens(root + "\\Charts", RegistryRoot::kLocalMachine), 2);
  EXPECT_NE(registry->DeleteKey(kUserRoot, root), 0) << "there is a key under it";
  EXPECT_EQ(registry->DeleteKey(kUserRoot, root + "\\CHARTS\\8.0"), 0);
  EXPECT_EQ(Opens(root + "\\Charts\\8.0"), 2);
  EXPECT_EQ(Opens(root + "\\Charts"), 0);
}

TEST_F(RegistryTest, ReturnsTheCodeOfEachFailure) {
  RegistryKey key = 0;
  RegistryType type{};
  std::string bytes;
  EXPECT_EQ(registry->OpenKey(RegistryRoot::kNone, root, kBoth, key), 6);
  ASSERT_EQ(registry->CreateKey(kUserRoot, root), 0);
  const RegistryKey reading = Opened(root, Registry::kRead);
  EXPECT_EQ(registry->QueryValue(reading, "missing", type, bytes), 2);
  EXPECT_EQ(registry->SetValue(reading, "v", RegistryType::kString, "x"), 5);
  EXPECT_EQ(registry->DeleteValue(reading, "v"), 5);
  const RegistryKey writing = Opened(root);
  EXPECT_EQ(registry->SetValue(writing, "v", RegistryType::kDWord, "x"), 87);
  EXPECT_EQ(registry->DeleteValue(writing, "v"), 2);
  EXPECT_EQ(registry->SetValue(writing, "v", RegistryType::kString, "x"), 0);
  EXPECT_EQ(registry->DeleteValue(writing, "V"), 0);
  registry->CloseKey(writing);
  EXPECT_EQ(registry->SetValue(writing, "v", RegistryType::kString, "x"), 6);
  EXPECT_EQ(registry->QueryValue(writing, "v", type, bytes), 6);
}

}  // namespace
}  // namespace velumar
