#include "host/chart_registry.h"
#include "platform/virtual_platform.h"
#include "support/matchers.h"

namespace velumar {
namespace {

struct ChartRegistryTest : testing::Test {
  VirtualPlatform outside;
  ChartRegistry chart{outside.registry, outside.boxes};

  std::string Value(const std::string& key, const std::string& name) {
    std::string text;
    outside.registry.ReadText("Software\\Equis\\" + key, name, text);
    return text;
  }
  void Install(const std::string& version, bool with_folder = true) {
    outside.registry.CreateKey(RegistryRoot::kLocalMachine,
                               "SOFTWARE\\Equis International\\MetaStock Professional\\" + version);
    const std::string paths = "Common\\" + version + "\\File Paths";
    const std::string program = "MetaStock Pro " + version;
    for (const std::string& key : {paths, program + "\\DataPath", program + "\\OpenFileData"}) {
      outside.registry.CreateKey(RegistryRoot::kCurrentUser, "Software\\Equis\\" + key);
    }
    if (!with_folder) return;
    outside.registry.WriteText("Software\\Equis\\" + paths, "ProgramPath", "/chart/" + version);
  }
};

TEST_F(ChartRegistryTest, TheNewerInstallationWinsAndFailuresShowTheirReason) {
  EXPECT_EQ(chart.Version(), "8");
  EXPECT_FALSE(chart.SaveDataFolder("/data"));
  Install("8.0", false);
  EXPECT_EQ(chart.ProgramFolder(), "Error");
  const std::string key = "Bad Key Name: \n\nHKEY_CURRENT_USER\\Software\\Equis\\";
  EXPECT_THAT(outside.boxes.shown,
              ElementsAre(key + "MetaStock Pro 8.0\\DataPath", key + "Common\\8.0\\File Paths"));
  Install("8.0");
  EXPECT_EQ(chart.ProgramFolder(), "/chart/8.0");
  Install("9.0");
  EXPECT_EQ(chart.Version(), "9");
  EXPECT_EQ(chart.ProgramFolder(), "/chart/9.0");
  EXPECT_TRUE(chart.SaveDataFolder("/data") && chart.SaveChartsFolder("/charts"));
  EXPECT_EQ(Value("MetaStock Pro 9.0\\DataPath", "LastPath"), "/data");
  EXPECT_EQ(Value("MetaStock Pro 9.0\\OpenFileData", "SmartChartsPath"), "/charts");
}

}  // namespace
}  // namespace velumar
