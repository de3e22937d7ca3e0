#include "platform/x11/connection.h"
// The X library's names come after all others: some are macros.
#include <X11/Xlib.h>

#include <optional>
#include <stdexcept>

#include "platform/key_notation.h"
#include "platform/typing_target.h"
#include "platform/x11/chart_windows.h"
#include "platform/x11/key_sender.h"
#include "platform/x11/person.h"
#include "platform/x_server.h"

// libxdo leaves 72 bytes of the keyboard's description behind at each xdo_new.
// NOLINTNEXTLINE(bugprone-reserved-identifier): the sanitizer looks for this name.
extern "C" const char* __lsan_default_suppressions();
// NOLINTNEXTLINE(bugprone-reserved-identifier)
extern "C" const char* __lsan_default_suppressions() { return "leak:XkbGetMap\n"; }

namespace velumar {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

const TypingTarget::Look kChart{.title = "MetaStock"};

// Two programs on a display with the window manager that `Suite` wants.
template <typename Suite>
class OnDisplay : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    if (XServer::Installed()) server_.emplace(Suite::kWindowManager);
  }
  static void TearDownTestSuite() { server_.reset(); }

  void SetUp() override {
    if (!server_) GTEST_SKIP() << "Xvfb, openbox or setxkbmap isn't installed";
    windows_.emplace("MetaStock", server_->Display());
    keys_.emplace("MetaStock", server_->Display());
    chart_.emplace(server_->Display());
    editor_.emplace(server_->Display());
  }

  static inline std::optional<XServer> server_;
  std::optional<X11ChartWindows> windows_;
  std::optional<X11KeySender> keys_;
  std::optional<TypingTarget> chart_;
  std::optional<TypingTarget> editor_;

  static bool ComesToFront(Window window) {
    X11Connection connection(server_->Display());
    return Eventually([&] { return connection.FrontWindow() == window; });
  }
  // Window managers take their time until a new window has the focus.
  static Window OpenInFront(TypingTarget& program, const TypingTarget::Look& look) {
    const Window window = program.Open(look);
    EXPECT_TRUE(ComesToFront(window)) << look.title;
    return window;
  }
};

struct X11 : OnDisplay<X11> {
  static constexpr bool kWindowManager = true;
};

// Window managers are slow to take in a new keyboard layout.
struct X11WithoutWindowManager : OnDisplay<X11WithoutWindowManager> {
  static constexpr bool kWindowManager = false;
};

TEST_F(X11, WindowsAreListedFrontToBack) {
  const Window chart = OpenInFront(*chart_, {.title = "MetaStock Börse"});
  const Window notes = OpenInFront(*editor_, {.title = "Notes"});
  EXPECT_THAT(windows_->TopLevelWindows(), ElementsAre(notes, chart));
  EXPECT_EQ(windows_->WindowTitle(chart), "MetaStock Börse");
  EXPECT_EQ(windows_->OwnerOf(notes), WindowOwner::kOther);
  EXPECT_EQ(windows_->OwnerOf(chart), WindowOwner::kChartProgram);
  windows_->Maximize(chart);
  EXPECT_TRUE(Eventually([&] { return chart_->Width(chart) == XServer::kWidth; }));
  chart_->Close(chart);
  EXPECT_TRUE(Eventually([&] { return windows_->WindowTitle(chart).empty(); }));
  EXPECT_FALSE(windows_->IsWindowVisible(chart));
  EXPECT_FALSE(windows_->GiveFocus(chart));
  windows_->Maximize(chart);
}

TEST_F(X11, TheChartComesBackFromAnotherWorkspace) {
  const Window chart = OpenInFront(*chart_, kChart);
  chart_->MoveToWorkspace(chart, 1);
  ASSERT_TRUE(Eventually([&] { return keys_->Send("b") == KeyOutcome::kNotSent; }));
  chart_->TakeTyped(chart);
  EXPECT_TRUE(windows_->BringToFront("MetaStock"));
  EXPECT_EQ(keys_->Send("c"), KeyOutcome::kAccepted);
  EXPECT_EQ(chart_->TakeTyped(chart), "c");
}

TEST_F(X11, ARefreshBehindRaisesNothingAndWaitsForAnOpenMenu) {
  const Window chart = OpenInFront(*chart_, kChart);
  const Window notes = OpenInFront(*editor_, {.title = "Notes"});
  EXPECT_EQ(keys_->SendBehind("%VR"), KeyOutcome::kAccepted);
  EXPECT_THAT(windows_->TopLevelWindows(), ElementsAre(notes, chart));
  // An open menu takes all keys, wherever the focus is.
  Person person(server_->Display());
  person.KeepKeyboard();
  EXPECT_EQ(keys_->SendBehind("%VR"), KeyOutcome::kNotSent);
  person.LeaveKeyboard();
  chart_->Iconify(chart);
  ASSERT_TRUE(Eventually([&] { return !windows_->IsWindowVisible(chart); }));
  EXPECT_EQ(keys_->SendBehind("%VR"), KeyOutcome::kNotSent);
  EXPECT_FALSE(windows_->IsWindowVisible(chart)) << "an icon stays an icon";
  EXPECT_EQ(chart_->TakeTyped(chart), "%vR");
  EXPECT_THAT(editor_->TakeTyped(notes), IsEmpty());
}

TEST_F(X11, OnlyTheChartProgramsOwnDialogCounts) {
  const auto exists = [&] { return windows_->DialogExists("#32770", "Open"); };
  const Window notes = OpenInFront(*editor_, {.title = "Notes"});
  OpenInFront(*editor_, {.title = "Open", .owner = notes});
  EXPECT_FALSE(exists());
  const Window chart = OpenInFront(*chart_, kChart);
  EXPECT_FALSE(exists());
  const Window dialog = OpenInFront(*chart_, {.title = "Open", .owner = chart});
  EXPECT_TRUE(Eventually(exists));
  EXPECT_TRUE(windows_->HasOwner(dialog));
  EXPECT_FALSE(windows_->HasOwner(chart));
  ASSERT_TRUE(windows_->BringToFront("Notes"));
  ASSERT_TRUE(exists());
  EXPECT_EQ(keys_->Send("x"), KeyOutcome::kAccepted) << "whatever the trader clicked before";
  EXPECT_EQ(chart_->TakeTyped(dialog), "x");
  chart_->Close(dialog);
  EXPECT_TRUE(Eventually([&] { return !exists(); }));
  // A dialog that a helper of the chart program shows for it. The window manager leaves the focus
  // with the notes, since a dialog may only take it from its own program.
  const Window helper = editor_->Open({.title = "Open", .owner = chart});
  EXPECT_TRUE(Eventually(exists));
  EXPECT_EQ(keys_->Send("x"), KeyOutcome::kAccepted);
  EXPECT_EQ(editor_->TakeTyped(helper), "x");
}

TEST_F(X11, NobodyElsesWindowReceivesAKey) {
  const std::vector<TypingTarget::Look> others{
      {.title = "Notes"}, {.title = "Open"}, {.title = "MetaStock Data"}, {.title = "MetaStock"}};
  const Window chart = OpenInFront(*chart_, {.title = "MetaStock", .program_file = "MSWIN.EXE"});
  for (const auto& look : others) {
    const Window other = OpenInFront(*editor_, look);
    EXPECT_EQ(keys_->Send("%Fe"), KeyOutcome::kNotSent) << look.title;
    EXPECT_THAT(editor_->TakeTyped(other), IsEmpty()) << look.title;
    EXPECT_TRUE(windows_->BringToFront("MetaStock"));
    EXPECT_EQ(keys_->Send("%Fe"), KeyOutcome::kAccepted) << look.title;
    EXPECT_EQ(chart_->TakeTyped(chart), "%fe") << look.title;
    editor_->Close(other);
  }
  // Its own message box isn't for these keys either.
  const Window box = OpenInFront(*chart_, {.title = "Error", .owner = chart});
  ASSERT_TRUE(windows_->BringToFront("Error"));
  EXPECT_EQ(keys_->Send("{ENTER}"), KeyOutcome::kNotSent);
  EXPECT_THAT(chart_->TakeTyped(box), IsEmpty());
}

TEST_F(X11, AnotherWindowInTheMidstOfATextGetsNothing) {
  const Window chart = OpenInFront(*chart_, kChart);
  const Window notes = OpenInFront(*editor_, {.title = "Notes"});
  ASSERT_TRUE(windows_->BringToFront("MetaStock"));
  chart_->SetOnKey([&](const std::string& key) {
    if (key != "%x") return;
    X11ChartWindows("MetaStock", server_->Display()).BringToFront("Notes");
    ComesToFront(notes);
  });
  EXPECT_EQ(keys_->Send("ab%xcd"), KeyOutcome::kNotSent);
  EXPECT_EQ(chart_->TakeTyped(chart), "ab%x");
  EXPECT_THAT(editor_->TakeTyped(notes), IsEmpty());
}

TEST_F(X11, AWindowThatClosesOrCantAnswerIsNoFailure) {
  const Window chart = OpenInFront(*chart_, kChart);
  OpenInFront(*chart_, {.title = "Open", .owner = chart, .closes_at_enter = true});
  EXPECT_EQ(keys_->Send("{ENTER}"), KeyOutcome::kAccepted);
  const Window mute = OpenInFront(*chart_, {.title = "MetaStock mute", .answers_pings = false});
  ASSERT_TRUE(windows_->BringToFront("MetaStock mute"));
  EXPECT_EQ(keys_->Send("abc"), KeyOutcome::kAccepted);
  EXPECT_TRUE(Eventually([&] { return chart_->TakeTyped(mute) == "abc"; }));
}

TEST_F(X11WithoutWindowManager, TextsArriveInEveryLayout) {
  const Window chart = chart_->Open(kChart);
  ASSERT_TRUE(windows_->BringToFront("MetaStock"));
  const std::string text = "C:\\Börse\\éÉ €ßÄ กขค ДЖ ž 100%_{}~^#@ aZ\\";
  for (const char* const layout : {"us", "de", "fr", "th", "us,ru"}) {
    server_->SetLayout(layout);
    Person person(server_->Display());
    if (std::string(layout) == "us,ru") person.SwitchToLayout(1);
    const std::vector<KeySym> before = person.Layout();
    for (const bool caps_lock : {false, true}) {
      person.SetCapsLock(caps_lock);
      EXPECT_EQ(keys_->Send(EscapedKeys(text) + "%F"), KeyOutcome::kAccepted);
      EXPECT_EQ(chart_->TakeTyped(chart), text + "%f") << layout << " Caps Lock " << caps_lock;
    }
    EXPECT_EQ(person.Layout(), before) << layout;
    person.SwitchToLayout(0);
  }
  server_->SetLayout("us");
}

TEST_F(X11WithoutWindowManager, ABusyProgramStillReadsStrangeCharacters) {
  const Window chart = chart_->Open(kChart);
  ASSERT_TRUE(windows_->BringToFront("MetaStock"));
  chart_->SetBusy(true);
  EXPECT_EQ(keys_->Send("aäก"), KeyOutcome::kNotAnswered);
  chart_->SetBusy(false);
  EXPECT_TRUE(Eventually([&] { return chart_->TakeTyped(chart) == "aäก"; }));
  EXPECT_EQ(keys_->Send("bäก"), KeyOutcome::kAccepted);
  EXPECT_EQ(chart_->TakeTyped(chart), "bäก");
}

TEST_F(X11WithoutWindowManager, MoreStrangeCharactersThanSpareKeys) {
  const Window chart = chart_->Open(kChart);
  ASSERT_TRUE(windows_->BringToFront("MetaStock"));
  std::string text;
  for (char32_t c = 0x4E00; c < 0x4E00 + 30; ++c) {
    text += {static_cast<char>(0xE4), static_cast<char>(0x80 | ((c >> 6) & 0x3F)),
             static_cast<char>(0x80 | (c & 0x3F))};
  }
  EXPECT_EQ(keys_->Send(text + "%+x^%{END}+(ab)"), KeyOutcome::kAccepted);
  EXPECT_EQ(chart_->TakeTyped(chart), text + "%+x^%<End>AB");
}

TEST(X11WithoutDisplay, ALostDisplayIsAnErrorAndNoCrash) {
  EXPECT_THROW(X11ChartWindows("MetaStock", "unix/:9999"), std::runtime_error);
  EXPECT_THROW(X11KeySender("MetaStock", "unix/:9999"), std::runtime_error);
  if (!XServer::Installed()) GTEST_SKIP() << "Xvfb, openbox or setxkbmap isn't installed";
  auto server = std::make_unique<XServer>(false);
  X11ChartWindows windows("MetaStock", server->Display());
  X11KeySender keys("MetaStock", server->Display());
  server.reset();
  EXPECT_THROW(windows.TopLevelWindows(), std::runtime_error);
  EXPECT_THROW(windows.BringToFront("MetaStock"), std::runtime_error);
  EXPECT_THROW(windows.DialogExists("#32770", "Open"), std::runtime_error);
  EXPECT_THROW(keys.Send("%VR"), std::runtime_error);
}

}  // namespace
}  // namespace velumar
