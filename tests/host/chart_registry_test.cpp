#include "host/chart_registry.h"
#include "platform/virtual_platform.h"

namespace velumar {
namespace {

class ChartRegistryTest : public testing::Test {
 protected:
  VirtualPlatform outside;
  ChartRegistry chart{outside.registry, outside.boxes};

  void Install(const std::string& version, bool with_folder = true) {
    outside.registry.CreateKey(RegistryRoot::kLocalMachine,
                               "SOFTWARE\\Equis International\\MetaStock Professional\\" + version);
    const std::string paths = "Common\\" + version + "\\File Paths";
    const std::string program = "MetaStock Pro " + version;
    for (const std::string& key : {paths, program + "\\DataPath", program + "\\OpenFileData"}) {
      outside.registry.CreateKey(RegistryRoot::kCurrentUser, "Software\\Equis\\" + key);
    }
    if (with_folder) {
      outside.registry.WriteText("Software\\Equis\\" + paths, "ProgramPath", "/chart/" + version);
    }
  }
};

TEST_F(ChartRegistryTest, TheNewerInstallationWins) {
  EXPECT_EQ(chart.Version(), "8");
  Install("8.0");
  EXPECT_EQ(chart.ProgramFolder(), "/chart/8.0");
  Install("9.0");
  EXPECT_EQ(chart.Version(), "9");
  EXPECT_EQ(chart.ProgramFolder(), "/chart/9.0");
  EXPECT_TRUE(chart.SaveDataFolder("/data") && chart.SaveChartsFolder("/charts"));
  const std::string key = "Software\\Equis\\MetaStock Pro 9.0\\";
  std::string text;
  outside.registry.ReadText(key + "DataPath", "LastPath", text);
  EXPECT_EQ(text, "/data");
  outside.registry.ReadText(key + "OpenFileData", "SmartChartsPath", text);
  EXPECT_EQ(text, "/charts");
}

TEST_F(ChartRegistryTest, FailuresShowTheirReason) {
  EXPECT_FALSE(chart.SaveDataFolder("/data"));
  Install("8.0", false);
  EXPECT_EQ(chart.ProgramFolder(), "Error");
  const std::string key = "Bad Key Name: \n\nHKEY_CURRENT_USER\\Software\\Equis\\";
  EXPECT_EQ(outside.boxes.shown,
            (std::vector{key + "MetaStock Pro 8.0\\DataPath", key + "Common\\8.0\\File Paths"}));
}

}  // namespace
}  // namespace velumar
