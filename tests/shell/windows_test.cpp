#include "marketdata/market_files.h"
#include "shell/window_shaping.h"
#include "support/whole_program.h"

namespace velumar {
namespace {

struct WindowsTest : RunFixture {
  std::string PriceFile(const std::string& name, const std::string& close = "1.5") {
    scratch.Write(name, "Date,Open,High,Low,Close\n20070102,1,2,0.5," + close + "\n");
    return scratch.Sub(name);
  }
  std::vector<std::string>& Boxes() { return all->outside.boxes.shown; }
};

TEST_F(WindowsTest, SettingsComeBackInTheNextProcess) {
  all->program.Start();
  EXPECT_FALSE(all->outside.settings.texts.contains("Top")) << "the first start of all";
  EXPECT_EQ(all->Setup().DTPicker1.Value(), MadeDate(133)) << "a third of the series is left";
  all->Setup().DTPicker1.UserPick(MadeDate(198));
  all->Panel().Combo2.SetText("5");
  all->Navigator().HScrollx.SetValue(35);
  all->Panel().HScrollx.SetValue(all->Panel().HScrollx.Limits().low);
  all->Setup().Image3.UserClick();
  all->Navigator().Image5.UserClick();
  ASSERT_FALSE(all->Panel().Loaded()) << "its run has ended";
  all->Setup().SetTop(3000);
  all->Setup().SetLeft(-200);
  all->Setup().DTPicker1.UserPick(19990104);
  all->Setup().Image5.UserClick();
  EXPECT_TRUE(all->outside.programs.ended);
  EXPECT_FALSE(all->ledger.CanRead());
  EXPECT_THAT(Boxes(), ElementsAre(HasSubstr("DataPath"), HasSubstr("OpenFileData")))
      << "no chart program has ever been here";
  Reopen();
  all->program.Start();
  EXPECT_EQ(all->Setup().Left(), -200);
  EXPECT_EQ(all->Setup().DTPicker1.Value(), 19990104);
  all->Setup().Combo1.UserChoose(0);
  EXPECT_EQ(all->Setup().DTPicker1.Value(), MadeDate(133)) << "a day of the chosen series";
  EXPECT_EQ(all->Panel().Combo2.Text(), "5");
  EXPECT_EQ(all->session.RefreshDelay, 5000);
  EXPECT_EQ(all->Navigator().Opacity(), 35);
  EXPECT_EQ(all->Panel().Opacity(), all->Panel().HScrollx.Limits().low);
  EXPECT_EQ(all->outside.settings.texts["Symbol"], "ABC");
}

// Whenever the program ends, its windows reopen where the trader put them.
TEST_F(WindowsTest, APlaceOfARunOrASlideIsNeverKept) {
  for (const bool in_slide : {true, false}) {
    all = std::make_unique<WholeProgram>(data);
    all->program.Start();
    all->Setup().SetTop(3000);
    all->Setup().SetLeft(-200);
    if (in_slide) {
      all->At(100, [this] { all->Setup().Image5.UserClick(); });
    } else {
      InPauseOf(198, [this] { all->Setup().on_close(); });  // a log-out
    }
    all->Play(198);
    EXPECT_TRUE(all->outside.programs.ended);
    EXPECT_EQ(all->outside.settings.texts["Top"], "3000");
    EXPECT_EQ(all->outside.settings.texts["Left"], "-200");
  }
}

TEST_F(WindowsTest, BadOrReadOnlySettingsStopNothing) {
  all->outside.settings.texts.insert({{"Top", "left"},
                                      {"Refresh", "0"},
                                      {"SelectDate", "soon"},
                                      {"NavTop", "99999"},
                                      {"ControlPannelTransparent", "-3"},
                                      {"PorfolioTransparent", "x"}});
  all->program.Start();
  EXPECT_TRUE(all->Setup().Visible());
  EXPECT_EQ(all->Setup().DTPicker1.Value(), MadeDate(133));
  EXPECT_EQ(all->session.RefreshDelay, 3000);
  EXPECT_EQ(all->Navigator().Opacity(), 250);
  EXPECT_EQ(all->Panel().Opacity(), 250);
  all = std::make_unique<WholeProgram>(data);
  all->outside.settings.failure = "disk full";
  StartAt(198);
  EXPECT_EQ(all->session.BarIndex, 199);
  EXPECT_THAT(Boxes(), ElementsAre(HasSubstr("disk full")));
}

// The setup window lists securities again after an import, and a run goes on as it began.
TEST_F(WindowsTest, DroppedPriceFilesAreImportedIntoTheDirectory) {
  FrmImport& import = all->windows.frmImport;
  all->program.Start();
  all->Setup().UserDrop({PriceFile("BAD_D.csv", "x"), PriceFile("MINE_D.csv")});
  EXPECT_THAT(import.Caption(), HasSubstr(data));
  EXPECT_EQ(all->Setup().Combo1.Rows().size(), 2U) << "nothing changes before Import";
  all->outside.events.SetOnPending([&] { all->Setup().Image3.UserClick(); });
  import.cmdImport.UserClick();
  all->outside.events.SetOnPending(nullptr);
  EXPECT_TRUE(all->Setup().Visible()) << "no run begins during an import";
  EXPECT_EQ(all->session.Symbol, "MINE");
  EXPECT_EQ(ReadBars(data, "MINE", -1).size(), 1U);
  // Of a symbol with several intervals, the line of the file's own is chosen.
  scratch.Write("ABC_15.csv",
                "Date,Time,Open,High,Low,Close\n20070102,100000,1,2,0.5,1.5\n"
                "20070102,101500,1,2,0.5,1.5\n");
  all->Setup().UserDrop({scratch.Sub("ABC_15.csv")});
  import.cmdImport.UserClick();
  EXPECT_EQ(all->session.Symbol, "ABC");
  EXPECT_EQ(all->Setup().cbxPeriod.Text(), "15");

  InPauseOf(197, [&] {
    all->Navigator().Image5.UserClick();
    Boxes().clear();
    all->Setup().UserDrop({scratch.Sub("MINE_D.csv")});
    EXPECT_THAT(Boxes(), ElementsAre(HasSubstr("Pause")));
  });
  all->Setup().Combo1.UserChoose(0);
  all->Play(190);
  EXPECT_FALSE(import.Loaded()) << "a start closes it";
  EXPECT_EQ(all->session.Symbol, "ABC");
  EXPECT_EQ(StoreSize(), 200U);
}

TEST_F(WindowsTest, AFolderOfPriceFilesBecomesADataDirectory) {
  const std::string folder = scratch.Sub("prices");
  std::filesystem::create_directory(folder);
  for (const char* name : {"prices/B_D.csv", "prices/A_D.CSV"}) PriceFile(name);
  all->program.Start();
  all->outside.folders.answers = {folder};
  all->Setup().Command5.UserClick();
  EXPECT_THAT(all->Setup().Combo1.Rows(), testing::IsEmpty());
  // The next start of the program offers them again.
  all = std::make_unique<WholeProgram>(folder);
  all->program.Start();
  all->windows.frmImport.on_enter();
  EXPECT_EQ(all->session.DataDir, folder);
  EXPECT_EQ(all->Setup().Combo1.Rows().size(), 2U);
}

// The window slides in with clicks running; its ledger opens after that.
TEST_F(WindowsTest, AStartWhileTheWindowComesUpBeginsNoRunWithoutALedger) {
  const auto start = [this] { all->Setup().Image3.UserClick(); };
  all->At(300, start);
  all->program.Start();
  EXPECT_TRUE(all->Setup().Visible());
  EXPECT_TRUE(all->session.BarDate.empty());
  EXPECT_TRUE(all->ledger.CanWrite());
  all->Play(198);
  EXPECT_EQ(all->session.BarIndex, 199);
  // Nor does one while the securities of a large directory are listed.
  const std::string many = scratch.Sub("many");
  std::filesystem::create_directory(many);
  WriteFile(many + "/MASTER", Master(std::vector<Listed>(101)));
  all->Navigator().Image5.UserClick();
  all->Setup().Text3.UserType(many);
  all->outside.events.SetOnPending(start);
  all->Setup().Text3.on_key_up(kEnterKey);
  EXPECT_TRUE(all->Setup().Visible());
  EXPECT_FALSE(std::filesystem::exists(many + "/Simulate"));
  EXPECT_THAT(Boxes(), testing::IsEmpty());
}

TEST_F(WindowsTest, AMarketsWordInTheDirectorySetsTheBoxes) {
  const std::string other = scratch.Sub("other");
  StoreSecurity(other, {"ZED", "Zed", 60}, IntradayBars(60, 60), all->cache);
  all->program.Start();
  Form1& setup = all->Setup();
  setup.Text3.UserType("D:\\DATA\\SET\\");
  setup.txtcomm.UserType("40000");
  setup.Text3.UserType("D:\\data\\set\\");
  EXPECT_EQ(setup.txtcomm.ForeColour(), kRed) << "more than the commission of a contract can be";
  const std::tuple<const char*, const char*, const char*, bool> cases[] = {
      {"D:\\DATA\\SET\\", "100", "1,000", true},
      {"D:\\ASSET\\TFEX\\", "50,000", "1", true},
      {"D:\\data\\set\\", "50,000", "1", false}};  // no word: the boxes stay
  for (const auto& [directory, margin, quantity, percent] : cases) {
    setup.Text3.UserType(directory);
    EXPECT_EQ(setup.txtContractValue.Text(), margin) << directory;
    EXPECT_EQ(all->Panel().txtContractVol.Text(), quantity);
    EXPECT_EQ(setup.lblPercentComm.Visible(), percent) << directory;
    EXPECT_EQ(all->outside.settings.texts["LastPath"], directory);
  }
  setup.txtContractValue.SetText("many");
  setup.Text3.UserType(other, 'r');
  EXPECT_EQ(all->session.InitMargin, 50000);
  EXPECT_THAT(setup.txtContractValue.ToolTip(), HasSubstr("is not a number"));
  EXPECT_EQ(all->session.SimDir, data + "\\Simulate") << "the store stays where the start put it";
  EXPECT_EQ(all->session.Symbol, "ABC");
  setup.Text3.UserKeyUp(13);
  EXPECT_EQ(all->session.Symbol, "ZED");
}

// The directory of the samples is in its box from the start, which fires no change.
TEST_F(WindowsTest, AnInstallationHasSamplesOfAMarketAndADonatePage) {
  const std::string samples = scratch.Sub("ASSETS");
  std::filesystem::rename(data, samples);
  scratch.Write("support.html", "<p>");
  VirtualPlatform outside;
  Platform platform = outside.References();
  platform.default_data_dir = samples;
  platform.program_folder = scratch.Text();
  SimSession session;
  Desktop desktop;
  Program program(session, desktop, platform, all->cache, all->ledger);
  program.Start();
  EXPECT_TRUE(desktop.form1().lblPercentComm.Visible());
  EXPECT_EQ(session.InitMargin, 100);
  desktop.form1().ImgDonate.SetVisible(true);
  desktop.form1().ImgDonate.UserClick();
  EXPECT_THAT(outside.programs.opened, ElementsAre(EndsWith("support.html")));
}

TEST_F(WindowsTest, BadAccountTextsAreMarkedWhileTypedAndRefuseTheStart) {
  all->program.Start();
  Form1& setup = all->Setup();
  for (TextBox* box : {&setup.txtcomm, &setup.txtInitPorfolio, &setup.txtVAT,
                       &setup.txtContractValue, &setup.txtProfitperContract}) {
    const std::string good = box->Text();
    Boxes().clear();
    box->UserType("7%");
    EXPECT_EQ(box->ForeColour(), kRed) << box->Name();
    setup.Image3.UserClick();
    EXPECT_THAT(Boxes(), ElementsAre(HasSubstr(": \"7%\" is not a number")));
    EXPECT_THAT(box->ToolTip(), EndsWith("\n" + Boxes().front()));
    EXPECT_TRUE(setup.Visible()) << "no run has begun";
    box->UserType(good);
    EXPECT_EQ(box->ForeColour(), Form1::kField.colour);
    EXPECT_EQ(box->ToolTip(), Form1::kPathTip);
  }
}

// The panel is loaded before the directory and the texts of the first run are known.
TEST_F(WindowsTest, TheFirstRunUsesWhatWasTypedAndItsMarketsTerms) {
  const std::string stock = scratch.Sub("SET");
  std::filesystem::rename(data, stock);
  all = std::make_unique<WholeProgram>(stock);
  all->program.Start();
  all->Setup().txtInitPorfolio.UserType("500,000");
  all->Setup().txtContractValue.UserType("80");
  all->Setup().txtProfitperContract.UserType("2");
  InPauseOf(198, [this] {
    EXPECT_EQ(all->Panel().txtContractVol.Text(), "1,000") << "the market's own lot stays";
    EXPECT_EQ(all->Panel().Label6.Text(), "(Buy:= 0 Shares   Avg. Buy:=0.0 ) ");
    EXPECT_EQ(all->Panel().lblinfo.Text(), "Vol. Buy [0]   Porfolio [500,000]");
    EXPECT_EQ(all->session.InitMargin, 80);
    EXPECT_EQ(all->session.ProfitPerContract, 2);
  });
  StartAt(198);
  EXPECT_EQ(all->session.Balance, 500000);
  all->desktop.Unload(all->Panel());
  TextBox& quantity = all->desktop.form3().txtContractVol;
  EXPECT_EQ(quantity.Text(), "1,000") << "in the next run too";
  all->Panel().Show();
  quantity.UserType("1500");
  quantity.UserLeave();
  EXPECT_EQ(quantity.Text(), "1,500");
}

TEST_F(WindowsTest, BigDisplaysFitTheScreenAndOpenWhereTheyWereDragged) {
  all->outside.screen.width = 12000;
  all->program.Start();
  EXPECT_EQ(all->desktop.frmBigPrice().Left(), 0) << "a place for a wider screen";
  all->desktop.frmBigPrice().SetLeft(45);
  all->desktop.frmBigPrice().SetTop(0);
  all->windows.form1.on_close();
  EXPECT_EQ(all->outside.settings.texts["frmBigPriceLeft"], "45") << "still open at the end";
  EXPECT_FALSE(all->outside.settings.texts.contains("frmBigScoreLeft")) << "never dragged";
  all->desktop.Unload(all->desktop.frmBigPrice());
  EXPECT_TRUE(all->desktop.frmBigPrice().Left() == 45 && all->desktop.frmBigPrice().Top() == 0);
}

TEST_F(WindowsTest, ClosingThePanelInARunBringsItBackHiddenWithAFreshAccount) {
  InPauseOf(198, [this] {
    all->session.LAccum = all->session.UsedMargin = 2;
    all->Navigator().HScrollx.UserMove(0);
    all->Panel().HScrollx.UserMove(0);
    ASSERT_TRUE(all->Navigator().Opacity() == 0 && all->Panel().Opacity() == 0);
    all->program.ShowAgain();  // the program was started once more
    EXPECT_TRUE(all->Navigator().Opacity() == 250 && all->Panel().Opacity() == 250);
    all->Panel().Image5.UserClick();
    EXPECT_FALSE(all->Panel().Loaded() || all->windows.frmBigScore.Loaded());
  });
  StartAt(198);  // one more bar after the pause
  EXPECT_TRUE(all->Panel().Loaded() && !all->Panel().Visible());
  EXPECT_TRUE(all->session.LAccum == 0 && all->session.UsedMargin == 0);
  EXPECT_EQ(all->Panel().Label6.Text(), "( L=0 Avg=0.0 )  ( S=0 Avg= 0.0 ) ");
}

TEST_F(WindowsTest, APanelThatSlidesAwayLeavesTheNextRunsPanelAlone) {
  InPauseOf(61, [this] {
    all->outside.events.SetOnPending(nullptr);
    all->At(100, [this] {
      all->Navigator().Image5.UserClick();
      all->At(9000, [this] { all->session.LAccum = 2; });
      all->Setup().Image3.UserClick();
    });
    all->Panel().Image5.UserClick();
    EXPECT_TRUE(all->Panel().Visible());
    EXPECT_EQ(all->session.LAccum, 2) << "its account goes on";
  });
  StartAt(60);
}

TEST_F(WindowsTest, MoreChartsThanAScreenHoldsAreRefused) {
  TextBox& count = all->Navigator().txtRefresh;
  count.SetStartText("500");
  all->program.Start();
  EXPECT_EQ(count.Text(), "1");
  all->Navigator().Show();
  for (const char* text : {"20", "21", "99999999999", "1,000"}) {
    count.UserType(text);
    EXPECT_EQ(count.Text(), "20") << text;
  }
  EXPECT_THAT(Boxes(), Contains(HasSubstr("not 21")));
}

TEST(ShapingTest, ASavedPlaceMustBeOnAScreen) {
  VirtualPlatform outside;
  Desktop desktop;
  const std::tuple<std::string, std::string, bool, const char*> cases[] = {
      {"8155.5", "-200", true, "8155.5 -200"},
      {"0", "500", false, "0 500"},
      {"11600", "500", false, "11600 500"},  // below the screen
      {"-1200", "500", false, "-1200 500"},  // above it
      {"40000", "500", true, "10365 500"},   // beyond 16 bits: the lowest that shows it whole
      {"300", "1E+09", true, "300 11145"},
      {"-99999", "500", false, "-99999 500"},
      {"100", "", false, "100 "},
  };
  for (auto [top, left, known, place] : cases) {
    EXPECT_EQ(CanRestorePlace(top, left, desktop.form2(), outside.screen), known) << place;
    EXPECT_EQ(top + " " + left, place);
  }
}

}  // namespace
}  // namespace velumar
