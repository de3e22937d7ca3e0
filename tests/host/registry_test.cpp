#include "host/reg_info.h"
#include "platform/virtual_platform.h"

namespace velumar {
namespace {

class RegistryTest : public testing::Test {
 protected:
  VirtualPlatform outside;
  ADVRegistry registry{outside.registry, outside.boxes};
  RegInfo info{outside.registry, outside.boxes};

  void Install(const std::string& version) {
    registry.CreateKey(
        "HKEY_LOCAL_MACHINE\\SOFTWARE\\Equis International\\MetaStock Professional\\" + version);
    for (const std::string& key :
         {"Common\\" + version + "\\File Paths", "MetaStock Pro " + version + "\\DataPath",
          "MetaStock Pro " + version + "\\OpenFileData"}) {
      registry.CreateKey("HKEY_CURRENT_USER\\Software\\Equis\\" + key);
    }
    registry.SetStringValue(
        "HKEY_CURRENT_USER\\Software\\Equis\\Common\\" + version + "\\File Paths", "ProgramPath",
        "/chart/" + version);
  }
};

TEST_F(RegistryTest, TheNewerInstallationWins) {
  EXPECT_EQ(info.HostVersion(), "8");
  EXPECT_EQ(info.HostProgramPath(), "C:\\Program Files\\Equis\\MetaStock");
  Install("8.0");
  EXPECT_EQ(info.HostVersion(), "8");
  EXPECT_EQ(info.HostProgramPath(), "/chart/8.0");
  Install("9.0");
  EXPECT_EQ(info.HostVersion(), "9");
  EXPECT_EQ(info.HostProgramPath(), "/chart/9.0");
  EXPECT_TRUE(info.SaveHostDataPath("/data"));
  EXPECT_TRUE(info.SaveHostChartsPath("/data"));
  EXPECT_EQ(
      registry.GetStringValue("HKEY_CURRENT_USER\\Software\\Equis\\MetaStock Pro 9.0\\OpenFileData",
                              "SmartChartsPath"),
      "/data");
  EXPECT_TRUE(outside.boxes.shown.empty());
}

TEST_F(RegistryTest, FailuresShowTheirReason) {
  EXPECT_FALSE(info.SaveHostDataPath("/data"));
  EXPECT_EQ(registry.GetStringValue("HKEY_CURRENT_USER\\Nothing", "x"), "Error");
  EXPECT_FALSE(registry.KeyExist("NOT_A_ROOT\\x"));
  EXPECT_FALSE(registry.KeyExist("HKEY_USERS\\x\\"));
  EXPECT_FALSE(registry.KeyExist("HKEY_SOMETHING\\x")) << "an unknown root is silent";
  EXPECT_EQ(outside.boxes.shown,
            (std::vector<std::string>{"Bad Key Name: \n\nHKEY_CURRENT_USER\\Software\\Equis\\"
                                      "MetaStock Pro 8.0\\DataPath",
                                      "Bad Key Name: \n\nHKEY_CURRENT_USER\\Nothing",
                                      "Incorrect Format: \n\nNOT_A_ROOT\\x",
                                      "Incorrect Format: \n\nHKEY_USERS\\x\\"}));
  registry.SetDisplayErrorMsg(false);
  EXPECT_FALSE(registry.DeleteKey("HKEY_USERS\\x"));
  EXPECT_EQ(outside.boxes.shown.size(), 4U);
}

TEST_F(RegistryTest, ValuesOfEachTypeComeBack) {
  const std::string key = "HKEY_CURRENT_USER\\Software\\Test";
  registry.CreateKey(key);
  EXPECT_TRUE(registry.SetDWordValue(key, "n", 4000000000U));
  EXPECT_EQ(std::get<std::uint32_t>(registry.GetDWordValue(key, "n")), 4000000000U);
  EXPECT_TRUE(registry.SetBinaryValue(key, "b", std::string("\0\xFF", 2)));
  EXPECT_EQ(registry.GetBinaryValue(key, "b"), std::string("\0\xFF", 2));
  EXPECT_TRUE(registry.KeyValueExist(key, "n"));
  EXPECT_TRUE(registry.DeleteKeyValue(key, "n"));
  EXPECT_FALSE(registry.KeyValueExist(key, "n"));
  EXPECT_TRUE(registry.DeleteKey(key));
  EXPECT_FALSE(registry.KeyExist(key));
  EXPECT_TRUE(outside.boxes.shown.empty());
}

}  // namespace
}  // namespace velumar
