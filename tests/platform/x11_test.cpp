// What only X displays have: workspaces, owners of dialogs, keyboard layouts.
#include <chrono>
#include <stdexcept>

#include "platform/common/key_timeouts.h"
#include "platform/key_fixture.h"
#include "platform/key_notation.h"

// libxdo leaks 72 bytes of the keyboard's description at each xdo_new.
// NOLINTNEXTLINE(bugprone-reserved-identifier): the sanitizer looks for this name.
extern "C" const char* __lsan_default_suppressions();
// NOLINTNEXTLINE(bugprone-reserved-identifier)
extern "C" const char* __lsan_default_suppressions() { return "leak:XkbGetMap\n"; }

namespace velumar {
namespace {

const TypingTarget::Look kChart{.title = "MetaStock"};
const TypingTarget::Look kNotes{.title = "Notes"};

struct X11 : KeyFixture {
  Window OpenChart(const TypingTarget::Look& look) { return driver->OpenInFront(Chart(), look); }
  Window OpenOther(const TypingTarget::Look& look) { return driver->OpenInFront(Editor(), look); }
  TypingTarget& Chart() { return driver->chart; }
  TypingTarget& Editor() { return driver->editor; }
};

TEST_F(X11, ListsWindowsFrontToBackAndBringsThemFromOtherWorkspaces) {
  const Window chart = OpenChart(kChart);
  const Window notes = OpenOther(kNotes);
  EXPECT_THAT(Windows().TopLevelWindows(), ElementsAre(notes, chart));
  EXPECT_EQ(Windows().OwnerOf(notes), WindowOwner::kOther);
  EXPECT_EQ(Windows().OwnerOf(chart), WindowOwner::kChartProgram);
  Windows().Maximize(chart);
  EXPECT_TRUE(Eventually([&] { return driver->Width(chart) == XServer::kWidth; }));

  ASSERT_TRUE(Windows().BringToFront("MetaStock"));
  driver->MoveToWorkspace(chart, 1);
  ASSERT_TRUE(Eventually([&] { return Keys().Send("b") == KeyOutcome::kNotSent; }));
  Chart().TakeTyped(chart);
  EXPECT_TRUE(Windows().BringToFront("MetaStock"));
  EXPECT_EQ(Keys().Send("c"), KeyOutcome::kAccepted);
  EXPECT_EQ(Chart().TakeTyped(chart), "c");

  Chart().Close(chart);
  EXPECT_TRUE(Eventually([&] { return Windows().WindowTitle(chart).empty(); }));
  EXPECT_FALSE(Windows().GiveFocus(chart));
  Windows().Maximize(chart);
}

TEST_F(X11, ARefreshInTheBackgroundRaisesNothingAndWaitsForAnOpenMenu) {
  const Window chart = OpenChart(kChart);
  const Window notes = OpenOther(kNotes);
  EXPECT_EQ(Keys().SendInBackground("%VR"), KeyOutcome::kAccepted);
  EXPECT_THAT(Windows().TopLevelWindows(), ElementsAre(notes, chart));
  // An open menu takes all keys, wherever the focus is.
  driver->GrabKeyboard(true);
  EXPECT_EQ(Keys().SendInBackground("%VR"), KeyOutcome::kNotSent);
  driver->GrabKeyboard(false);
  driver->Minimise(chart);
  ASSERT_TRUE(Eventually([&] { return !Windows().IsWindowVisible(chart); }));
  EXPECT_EQ(Keys().SendInBackground("%VR"), KeyOutcome::kNotSent);
  EXPECT_FALSE(Windows().IsWindowVisible(chart)) << "it stays minimised";
  EXPECT_EQ(Chart().TakeTyped(chart), "%vR");
}

TEST_F(X11, OnlyTheChartProgramsOwnDialogCounts) {
  const auto exists = [&] { return Windows().FileDialogExists(); };
  const Window notes = OpenOther(kNotes);
  OpenOther({.title = "Open", .owner = notes});
  const Window chart = OpenChart(kChart);
  EXPECT_FALSE(exists());
  const Window dialog = OpenChart({.title = "Open", .owner = chart});
  EXPECT_TRUE(Eventually(exists));
  EXPECT_TRUE(Windows().HasOwner(dialog));
  ASSERT_TRUE(Windows().BringToFront("Notes"));
  ASSERT_TRUE(exists());
  EXPECT_EQ(Keys().Send("x"), KeyOutcome::kAccepted) << "finding the dialog brings it to the front";
  EXPECT_EQ(Chart().TakeTyped(dialog), "x");
  Chart().SetOnKey([&](const std::string&) { Chart().Close(dialog); });
  EXPECT_EQ(Keys().Send("{ENTER}"), KeyOutcome::kAccepted) << "it closes before it answers";
  EXPECT_TRUE(Eventually([&] { return !exists(); }));
  // A dialog that a helper of the chart program shows for it. The window manager leaves the focus
  // with the notes, since a dialog may only take it from its own program.
  const Window helper = Editor().Open({.title = "Open", .owner = chart});
  EXPECT_TRUE(Eventually(exists));
  EXPECT_EQ(Keys().Send("x"), KeyOutcome::kAccepted);
  EXPECT_EQ(Editor().TakeTyped(helper), "x");
}

TEST_F(X11, NoOtherWindowReceivesAKey) {
  const Window chart = OpenChart({.title = "MetaStock", .program_file = "MSWIN.EXE"});
  for (const std::string title : {"Notes", "Open", "MetaStock Data", "MetaStock"}) {
    const Window other = OpenOther({.title = title});
    EXPECT_EQ(Keys().Send("%Fe"), KeyOutcome::kNotSent) << title;
    EXPECT_THAT(Editor().TakeTyped(other), IsEmpty()) << title;
    EXPECT_TRUE(Windows().BringToFront("MetaStock"));
    EXPECT_EQ(Keys().Send("%Fe"), KeyOutcome::kAccepted) << title;
    EXPECT_EQ(Chart().TakeTyped(chart), "%fe") << title;
    Editor().Close(other);
  }
  const Window box = OpenChart({.title = "Error", .owner = chart});
  EXPECT_EQ(Keys().Send("{ENTER}"), KeyOutcome::kNotSent) << "the chart program's message box";
  EXPECT_THAT(Chart().TakeTyped(box), IsEmpty());
}

TEST_F(X11, AWindowThatComesToTheFrontMidwayReceivesNoKey) {
  const Window chart = OpenChart(kChart);
  const Window notes = OpenOther(kNotes);
  ASSERT_TRUE(Windows().BringToFront("MetaStock"));
  Chart().SetOnKey([&](const std::string& key) {
    if (key != "%x") return;
    MakeX11ChartWindows(driver->display)->BringToFront("Notes");
    X11Connection connection(driver->display);
    Eventually([&] { return connection.FrontWindow() == notes; });
  });
  EXPECT_EQ(Keys().Send("ab%xcd"), KeyOutcome::kNotSent);
  EXPECT_EQ(Chart().TakeTyped(chart), "ab%x");
  EXPECT_THAT(Editor().TakeTyped(notes), IsEmpty());
}

TEST_F(X11, AcceptsWindowsThatCantAnswer) {
  const Window mute = OpenChart({.title = "MetaStock mute", .answers_pings = false});
  EXPECT_EQ(Keys().Send("abc"), KeyOutcome::kAccepted);
  EXPECT_EQ(Taken(mute, 3), "abc");
}

// Window managers are slow to notice a new keyboard layout.
struct X11WithoutWindowManager : KeyFixture {
  void Open() override {
    driver.emplace(server.emplace(false));
    window = driver->chart.Open(kChart);
    ASSERT_TRUE(Windows().BringToFront(kHost));
  }
  ~X11WithoutWindowManager() override { driver.reset(); }  // before its server
  std::string Typed() { return driver->chart.TakeTyped(window); }

  std::optional<XServer> server;
  Window window = 0;
};

TEST_F(X11WithoutWindowManager, SendsTextsInEveryLayout) {
  const std::string text = "C:\\Börse\\éÉ €ßÄ กขค ДЖ ž 100%_{}~^#@ aZ\\";
  for (const char* const layout : {"us", "de", "fr", "th", "us,ru"}) {
    server->SetLayout(layout);
    if (std::string(layout) == "us,ru") driver->SwitchToLayout(1);
    const std::vector<KeySym> before = driver->Layout();
    for (const bool caps_lock : {false, true}) {
      driver->SetCapsLock(caps_lock);
      EXPECT_EQ(Keys().Send(EscapedKeys(text) + "%F"), KeyOutcome::kAccepted);
      EXPECT_EQ(Typed(), text + "%f") << layout << " Caps Lock " << caps_lock;
    }
    EXPECT_EQ(driver->Layout(), before) << layout;
  }
}

TEST_F(X11WithoutWindowManager, SpareKeysOutlastABusyProgramAndMayRunOut) {
  driver->chart.SetBusy(true);
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(Keys().Send("aäก"), KeyOutcome::kNotAnswered);
  EXPECT_LT(std::chrono::steady_clock::now() - start, 2 * kAnswerTimeout);
  driver->chart.SetBusy(false);
  EXPECT_TRUE(Eventually([&] { return Typed() == "aäก"; }));
  EXPECT_EQ(Keys().Send("bäก"), KeyOutcome::kAccepted);
  EXPECT_EQ(Typed(), "bäก");
  const std::string text = "一丁丂七丄丅丆万丈三上下丌不与丏丐丑丒专且丕世丗丘丙业丛东丝";
  EXPECT_EQ(Keys().Send(text + "%+x^%{END}+(ab)"), KeyOutcome::kAccepted);
  EXPECT_EQ(Typed(), text + "%+x^%<End>AB");
}

TEST(X11WithoutDisplay, ALostDisplayIsAnError) {
  EXPECT_THROW(MakeX11ChartWindows("unix/:9999"), std::runtime_error);
  EXPECT_THROW(MakeX11KeySender("unix/:9999"), std::runtime_error);
  if (!XServer::Installed()) GTEST_SKIP() << "Xvfb, openbox or setxkbmap isn't installed";
  std::optional<XServer> server(std::in_place, false);
  const auto windows = MakeX11ChartWindows(server->Display());
  const auto keys = MakeX11KeySender(server->Display());
  server.reset();
  EXPECT_THROW(windows->TopLevelWindows(), std::runtime_error);
  EXPECT_THROW(windows->FileDialogExists(), std::runtime_error);
  EXPECT_THROW(keys->Send("%VR"), std::runtime_error);
}

}  // namespace
}  // namespace velumar
