#include "cli/sandbox.h"

namespace velumar {
namespace {

const std::string kHeader = "date,time,open,high,low,close,volume,openinterest\n";

TEST(Import, DumpAndImportKeepEveryFloat) {
  Sandbox box;
  const auto file = box.File(
      "EDGE_D.csv",
      kHeader +
          "20200102,0,1.1754944e-38,1.7014117e+38,-1.7014117e+38,-1.1754944e-38,16777217,0\n"
          "20200103,0,0.1,3.4,0.30000001,1e-7,123456789,2147483648\n"
          "20210104,0,-5,-1,-9,-3.5,1e+20,0.00012207031\n");
  ASSERT_EQ(box.Run({"import", file, box.At("data")}).code, 0);
  const std::string dumped = box.Run({"dump", box.At("data"), "EDGE", "D"}).out;
  EXPECT_EQ(dumped,
            kHeader +
                "20200102,0,1.1754944e-38,1.7014117e+38,-1.7014117e+38,-1.1754944e-38,16777216,0\n"
                "20200103,0,0.1,3.4,0.3,1e-07,123456792,2147483648\n"
                "20210104,0,-5,-1,-9,-3.5,1e+20,0.00012207031\n");
  box.Run({"import", box.File("again.csv", dumped), box.At("other"), "--symbol", "EDGE"});
  EXPECT_EQ(box.Run({"dump", box.At("other"), "EDGE", "D"}).out, dumped);
}

TEST(Import, StoresIntradayBarsWithDatesAsItIsTold) {
  Sandbox box;
  const auto file = box.File("day/test_15.csv",
                             "Date;Time;Open;High;Low;Close;Volume\n"
                             "02.01.2020;0:00;1;2;0.5;1.5;100\n02.01.2020;9:15;1;2;0.5;1.5;100\n");
  const auto answer = box.Run({"import", file, box.At("data"), "--date-format", "%d.%m.%Y"});
  EXPECT_EQ(answer.out + answer.err, "TEST 15: 2 bars, 20200102 to 20200102\n");
  EXPECT_EQ(box.Run({"dump", box.At("data"), "TEST", "15"}).out,
            kHeader + "20200102,000000,1,2,0.5,1.5,100,0\n20200102,091500,1,2,0.5,1.5,100,0\n");
}

TEST(Import, ReplacesASecurityAndKeepsItsName) {
  Sandbox box;
  const auto data = box.At("data");
  const auto one =
      box.File("one.csv", kHeader + "20200102,0,1,1,1,1,5,5\n20200103,0,1,1,1,1,5,5\n");
  const auto two = box.File("two.csv", kHeader + "20210105,0,2,2,2,2,6,6\n");
  EXPECT_EQ(box.Run({"import", one, data, "--symbol", "gold", "--name", "Gold of Zürich"}).code, 0);
  EXPECT_EQ(box.Run({"import", one, data, "--symbol", "SILVER"}).code, 0);
  EXPECT_EQ(box.Run({"import", two, data, "--symbol", "Gold"}).code, 0);
  EXPECT_EQ(box.Run({"import", two, data, "--symbol", "gold", "--interval", "60"}).code, 0);
  const auto listed = nlohmann::json::parse(box.Run({"list", data, "--json"}).out);
  ASSERT_EQ(listed.size(), 3U);
  EXPECT_EQ(listed[0].dump(),
            R"({"bars":1,"fields":7,"file":1,"first":20210105,"interval":-1,"last":20210105,)"
            R"("name":"Gold of Zürich","symbol":"GOLD"})");
  EXPECT_EQ(listed[1].at("name"), "SILVER");
  EXPECT_EQ(listed[2].at("interval"), 60);
  EXPECT_EQ(listed[2].at("name"), "GOLD");
}

TEST(Import, WarnsOfContradictoryPricesAndIgnoredTimes) {
  Sandbox box;
  const auto file = box.File("ODD_D.csv", kHeader +
                                              "20200102,160000,1,2,1,1,0,0\n"
                                              "20200103,160000,1,2,1.5,2,0,0\n"
                                              "20200106,160000,5,2,1,2,0,0\n");
  const auto answer = box.Run({"import", file, box.At("data")});
  EXPECT_EQ(answer.err, file +
                            ": 2 bars have contradictory prices, imported unchanged (first on "
                            "line 3)\n" +
                            file + ": 3 bars have a time, ignored because the series is daily\n");
}

// A failed import changes no byte of the directory, and creates none.
TEST(Import, WritesNothingAfterAnError) {
  Sandbox box;
  const auto data = box.At("data");
  const std::string row = "20200102,0,1,1,1,1,0,0\n";
  box.Run({"import", box.File("GOOD_D.csv", kHeader + row), data});
  std::filesystem::create_directory(box.At("FOLDER_D.csv"));
  std::filesystem::resize_file(box.File("HUGE_D.csv", ""), 5'000'000'000);
  box.File("BAD_D.csv", kHeader + row + "20200103,0,1,1,1,1e39,0,0\n");
  const auto before = FilesOf(data);
  for (const auto& [name, complaint] :
       std::vector<std::pair<std::string, std::string>>{{"BAD_D.csv", "line 3"},
                                                        {"NONE_D.csv", "No such file or directory"},
                                                        {"FOLDER_D.csv", "folder"},
                                                        {"HUGE_D.csv", "67108864"}}) {
    for (const std::string& directory : {data, box.At("new")}) {
      const auto answer = box.Run({"import", box.At(name), directory});
      EXPECT_EQ(answer.code, 1) << name;
      EXPECT_EQ(answer.out, "");
      EXPECT_THAT(answer.err, testing::HasSubstr(box.At(name)));
      EXPECT_THAT(answer.err, testing::HasSubstr(complaint));
    }
  }
  EXPECT_EQ(FilesOf(data), before);
  EXPECT_FALSE(std::filesystem::exists(box.At("new")));
}

}  // namespace
}  // namespace velumar
