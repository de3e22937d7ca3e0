// What only X displays have: workspaces, owners of dialogs, keyboard layouts.
#include <stdexcept>

#include "key_driver.h"
#include "platform/key_notation.h"

// libxdo leaks 72 bytes of the keyboard's description at each xdo_new.
// NOLINTNEXTLINE(bugprone-reserved-identifier): the sanitizer looks for this name.
extern "C" const char* __lsan_default_suppressions();
// NOLINTNEXTLINE(bugprone-reserved-identifier)
extern "C" const char* __lsan_default_suppressions() { return "leak:XkbGetMap\n"; }

namespace velumar {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

const TypingTarget::Look kChart{.title = "MetaStock"};

template <bool kWindowManager>
struct OnDisplay : ::testing::Test {
  static void SetUpTestSuite() {
    if (XServer::Installed()) server.emplace(kWindowManager);
  }
  static void TearDownTestSuite() { server.reset(); }

  void SetUp() override {
    if (!server) GTEST_SKIP() << "Xvfb, openbox or setxkbmap isn't installed";
    driver.emplace(server->Display());
  }
  ChartWindows& Windows() { return driver->Windows(); }
  KeySender& Keys() { return driver->Keys(); }
  TypingTarget& Chart() { return driver->chart; }
  TypingTarget& Editor() { return driver->editor; }

  static inline std::optional<XServer> server;
  std::optional<KeyDriver> driver;
};

using X11 = OnDisplay<true>;
// Window managers are slow to notice a new keyboard layout.
using X11WithoutWindowManager = OnDisplay<false>;

TEST_F(X11, ListsWindowsFrontToBack) {
  const Window chart = driver->OpenInFront(Chart(), {.title = "MetaStock Börse"});
  const Window notes = driver->OpenInFront(Editor(), {.title = "Notes"});
  EXPECT_THAT(Windows().TopLevelWindows(), ElementsAre(notes, chart));
  EXPECT_EQ(Windows().WindowTitle(chart), "MetaStock Börse");
  EXPECT_EQ(Windows().OwnerOf(notes), WindowOwner::kOther);
  EXPECT_EQ(Windows().OwnerOf(chart), WindowOwner::kChartProgram);
  Windows().Maximize(chart);
  EXPECT_TRUE(Eventually([&] { return Chart().Width(chart) == XServer::kWidth; }));
  Chart().Close(chart);
  EXPECT_TRUE(Eventually([&] { return Windows().WindowTitle(chart).empty(); }));
  EXPECT_FALSE(Windows().IsWindowVisible(chart));
  EXPECT_FALSE(Windows().GiveFocus(chart));
  Windows().Maximize(chart);
}

TEST_F(X11, BringsTheChartFromAnotherWorkspace) {
  const Window chart = driver->OpenInFront(Chart(), kChart);
  Chart().MoveToWorkspace(chart, 1);
  ASSERT_TRUE(Eventually([&] { return Keys().Send("b") == KeyOutcome::kNotSent; }));
  Chart().TakeTyped(chart);
  EXPECT_TRUE(Windows().BringToFront("MetaStock"));
  EXPECT_EQ(Keys().Send("c"), KeyOutcome::kAccepted);
  EXPECT_EQ(Chart().TakeTyped(chart), "c");
}

TEST_F(X11, ARefreshInTheBackgroundRaisesNothingAndWaitsForAnOpenMenu) {
  const Window chart = driver->OpenInFront(Chart(), kChart);
  const Window notes = driver->OpenInFront(Editor(), {.title = "Notes"});
  EXPECT_EQ(Keys().SendBehind("%VR"), KeyOutcome::kAccepted);
  EXPECT_THAT(Windows().TopLevelWindows(), ElementsAre(notes, chart));
  // An open menu takes all keys, wherever the focus is.
  User& user = driver->user;
  user.GrabKeyboard();
  EXPECT_EQ(Keys().SendBehind("%VR"), KeyOutcome::kNotSent);
  user.UngrabKeyboard();
  Chart().Iconify(chart);
  ASSERT_TRUE(Eventually([&] { return !Windows().IsWindowVisible(chart); }));
  EXPECT_EQ(Keys().SendBehind("%VR"), KeyOutcome::kNotSent);
  EXPECT_FALSE(Windows().IsWindowVisible(chart)) << "it stays minimised";
  EXPECT_EQ(Chart().TakeTyped(chart), "%vR");
  EXPECT_THAT(Editor().TakeTyped(notes), IsEmpty());
}

TEST_F(X11, OnlyTheChartProgramsOwnDialogCounts) {
  const auto exists = [&] { return Windows().DialogExists("#32770", "Open"); };
  const Window notes = driver->OpenInFront(Editor(), {.title = "Notes"});
  driver->OpenInFront(Editor(), {.title = "Open", .owner = notes});
  EXPECT_FALSE(exists());
  const Window chart = driver->OpenInFront(Chart(), kChart);
  EXPECT_FALSE(exists());
  const Window dialog = driver->OpenInFront(Chart(), {.title = "Open", .owner = chart});
  EXPECT_TRUE(Eventually(exists));
  EXPECT_TRUE(Windows().HasOwner(dialog));
  EXPECT_FALSE(Windows().HasOwner(chart));
  ASSERT_TRUE(Windows().BringToFront("Notes"));
  ASSERT_TRUE(exists());
  EXPECT_EQ(Keys().Send("x"), KeyOutcome::kAccepted) << "finding the dialog brings it to the front";
  EXPECT_EQ(Chart().TakeTyped(dialog), "x");
  Chart().Close(dialog);
  EXPECT_TRUE(Eventually([&] { return !exists(); }));
  // A dialog that a helper of the chart program shows for it. The window manager leaves the focus
  // with the notes, since a dialog may only take it from its own program.
  const Window helper = Editor().Open({.title = "Open", .owner = chart});
  EXPECT_TRUE(Eventually(exists));
  EXPECT_EQ(Keys().Send("x"), KeyOutcome::kAccepted);
  EXPECT_EQ(Editor().TakeTyped(helper), "x");
}

TEST_F(X11, NoOtherProgramsWindowReceivesAKey) {
  const std::vector<TypingTarget::Look> others{
      {.title = "Notes"}, {.title = "Open"}, {.title = "MetaStock Data"}, {.title = "MetaStock"}};
  const Window chart =
      driver->OpenInFront(Chart(), {.title = "MetaStock", .program_file = "MSWIN.EXE"});
  for (const auto& look : others) {
    const Window other = driver->OpenInFront(Editor(), look);
    EXPECT_EQ(Keys().Send("%Fe"), KeyOutcome::kNotSent) << look.title;
    EXPECT_THAT(Editor().TakeTyped(other), IsEmpty()) << look.title;
    EXPECT_TRUE(Windows().BringToFront("MetaStock"));
    EXPECT_EQ(Keys().Send("%Fe"), KeyOutcome::kAccepted) << look.title;
    EXPECT_EQ(Chart().TakeTyped(chart), "%fe") << look.title;
    Editor().Close(other);
  }
  // Nor does the chart program's message box.
  const Window box = driver->OpenInFront(Chart(), {.title = "Error", .owner = chart});
  ASSERT_TRUE(Windows().BringToFront("Error"));
  EXPECT_EQ(Keys().Send("{ENTER}"), KeyOutcome::kNotSent);
  EXPECT_THAT(Chart().TakeTyped(box), IsEmpty());
}

TEST_F(X11, AWindowThatComesToTheFrontMidwayReceivesNoKey) {
  const Window chart = driver->OpenInFront(Chart(), kChart);
  const Window notes = driver->OpenInFront(Editor(), {.title = "Notes"});
  ASSERT_TRUE(Windows().BringToFront("MetaStock"));
  Chart().SetOnKey([&](const std::string& key) {
    if (key != "%x") return;
    MakeX11ChartWindows("MetaStock", server->Display())->BringToFront("Notes");
    X11Connection connection(server->Display());
    Eventually([&] { return connection.FrontWindow() == notes; });
  });
  EXPECT_EQ(Keys().Send("ab%xcd"), KeyOutcome::kNotSent);
  EXPECT_EQ(Chart().TakeTyped(chart), "ab%x");
  EXPECT_THAT(Editor().TakeTyped(notes), IsEmpty());
}

TEST_F(X11, AcceptsWindowsThatCloseOrCantAnswer) {
  const Window chart = driver->OpenInFront(Chart(), kChart);
  driver->OpenInFront(Chart(), {.title = "Open", .owner = chart, .closes_at_enter = true});
  EXPECT_EQ(Keys().Send("{ENTER}"), KeyOutcome::kAccepted);
  const Window mute =
      driver->OpenInFront(Chart(), {.title = "MetaStock mute", .answers_pings = false});
  ASSERT_TRUE(Windows().BringToFront("MetaStock mute"));
  EXPECT_EQ(Keys().Send("abc"), KeyOutcome::kAccepted);
  EXPECT_TRUE(Eventually([&] { return Chart().TakeTyped(mute) == "abc"; }));
}

TEST_F(X11WithoutWindowManager, SendsTextsInEveryLayout) {
  const Window chart = Chart().Open(kChart);
  ASSERT_TRUE(Windows().BringToFront("MetaStock"));
  const std::string text = "C:\\Börse\\éÉ €ßÄ กขค ДЖ ž 100%_{}~^#@ aZ\\";
  for (const char* const layout : {"us", "de", "fr", "th", "us,ru"}) {
    server->SetLayout(layout);
    User& user = driver->user;
    if (std::string(layout) == "us,ru") user.SwitchToLayout(1);
    const std::vector<KeySym> before = user.Layout();
    for (const bool caps_lock : {false, true}) {
      user.SetCapsLock(caps_lock);
      EXPECT_EQ(Keys().Send(EscapedKeys(text) + "%F"), KeyOutcome::kAccepted);
      EXPECT_EQ(Chart().TakeTyped(chart), text + "%f") << layout << " Caps Lock " << caps_lock;
    }
    EXPECT_EQ(user.Layout(), before) << layout;
    user.SwitchToLayout(0);
  }
  server->SetLayout("us");
}

TEST_F(X11WithoutWindowManager, KeepsSpareKeysForABusyProgram) {
  const Window chart = Chart().Open(kChart);
  ASSERT_TRUE(Windows().BringToFront("MetaStock"));
  Chart().SetBusy(true);
  EXPECT_EQ(Keys().Send("aäก"), KeyOutcome::kNotAnswered);
  Chart().SetBusy(false);
  EXPECT_TRUE(Eventually([&] { return Chart().TakeTyped(chart) == "aäก"; }));
  EXPECT_EQ(Keys().Send("bäก"), KeyOutcome::kAccepted);
  EXPECT_EQ(Chart().TakeTyped(chart), "bäก");
}

TEST_F(X11WithoutWindowManager, SendsMoreCharactersThanThereAreSpareKeys) {
  const Window chart = Chart().Open(kChart);
  ASSERT_TRUE(Windows().BringToFront("MetaStock"));
  std::string text;
  for (char32_t c = 0x4E00; c < 0x4E00 + 30; ++c) {
    text += {static_cast<char>(0xE4), static_cast<char>(0x80 | ((c >> 6) & 0x3F)),
             static_cast<char>(0x80 | (c & 0x3F))};
  }
  EXPECT_EQ(Keys().Send(text + "%+x^%{END}+(ab)"), KeyOutcome::kAccepted);
  EXPECT_EQ(Chart().TakeTyped(chart), text + "%+x^%<End>AB");
}

TEST(X11WithoutDisplay, ALostDisplayIsAnError) {
  EXPECT_THROW(MakeX11ChartWindows("MetaStock", "unix/:9999"), std::runtime_error);
  EXPECT_THROW(MakeX11KeySender("MetaStock", "unix/:9999"), std::runtime_error);
  if (!XServer::Installed()) GTEST_SKIP() << "Xvfb, openbox or setxkbmap isn't installed";
  auto server = std::make_unique<XServer>(false);
  const auto windows = MakeX11ChartWindows("MetaStock", server->Display());
  const auto keys = MakeX11KeySender("MetaStock", server->Display());
  server.reset();
  EXPECT_THROW(windows->TopLevelWindows(), std::runtime_error);
  EXPECT_THROW(windows->BringToFront("MetaStock"), std::runtime_error);
  EXPECT_THROW(windows->DialogExists("#32770", "Open"), std::runtime_error);
  EXPECT_THROW(keys->Send("%VR"), std::runtime_error);
}

}  // namespace
}  // namespace velumar
