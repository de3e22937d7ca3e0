#include "platform/x11/connection.h"
// The X library's own names come behind all others: some are macros.
#include <X11/XKBlib.h>

#include <chrono>
#include <optional>
#include <stdexcept>

#include "platform/key_notation.h"
#include "platform/typing_target.h"
#include "platform/x11/chart_windows.h"
#include "platform/x11/key_sender.h"
#include "platform/x_server.h"
extern "C" {
#include <xdo.h>
}

// libxdo leaves 72 bytes of the keyboard's description behind at each xdo_new.
// NOLINTNEXTLINE(bugprone-reserved-identifier): the sanitizer looks for this name.
extern "C" const char* __lsan_default_suppressions();
// NOLINTNEXTLINE(bugprone-reserved-identifier)
extern "C" const char* __lsan_default_suppressions() { return "leak:XkbGetMap\n"; }

namespace velumar {
namespace {

using std::chrono::milliseconds;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

// A person at the keyboard of a display.
class Person {
 public:
  explicit Person(const std::string& display) : display_(xdo_new(display.c_str())) {}
  Person(const Person&) = delete;
  Person& operator=(const Person&) = delete;
  ~Person() {
    SetCapsLock(false);
    xdo_free(display_);
  }

  void Hold(const char* key) { xdo_send_keysequence_window_down(display_, CURRENTWINDOW, key, 0); }
  void LetGo(const char* key) { xdo_send_keysequence_window_up(display_, CURRENTWINDOW, key, 0); }
  void Press(const char* key) { xdo_send_keysequence_window(display_, CURRENTWINDOW, key, 0); }
  // As a program with an open menu does.
  void KeepKeyboard() {
    XGrabKeyboard(display_->xdpy, DefaultRootWindow(display_->xdpy), True, GrabModeAsync,
                  GrabModeAsync, CurrentTime);
    XSync(display_->xdpy, False);
  }
  void LeaveKeyboard() {
    XUngrabKeyboard(display_->xdpy, CurrentTime);
    XSync(display_->xdpy, False);
  }
  void SetCapsLock(bool on) {
    XkbLockModifiers(display_->xdpy, XkbUseCoreKbd, LockMask, on ? LockMask : 0u);
    XSync(display_->xdpy, False);
  }
  void SwitchToLayout(unsigned number) {
    XkbLockGroup(display_->xdpy, XkbUseCoreKbd, number);
    XSync(display_->xdpy, False);
  }
  bool HoldsModifier() const {
    XkbStateRec state{};
    XkbGetState(display_->xdpy, XkbUseCoreKbd, &state);
    return state.base_mods != 0;
  }
  bool HasCapsLock() const {
    XkbStateRec state{};
    XkbGetState(display_->xdpy, XkbUseCoreKbd, &state);
    return (state.locked_mods & LockMask) != 0;
  }
  // What every key of the layout means.
  std::vector<KeySym> Layout() const {
    int width = 0;
    const int count = display_->keycode_high - display_->keycode_low + 1;
    KeySym* const symbols = XGetKeyboardMapping(
        display_->xdpy, static_cast<KeyCode>(display_->keycode_low), count, &width);
    std::vector<KeySym> layout(symbols, symbols + std::ptrdiff_t{count} * width);
    XFree(symbols);
    return layout;
  }

 private:
  xdo_t* display_;
};

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

TEST_F(X11, WindowsAreListedFrontToBackAndFoundByTitle) {
  const Window longer = OpenInFront(*chart_, {.title = "MetaStock Börse"});
  const Window exact = OpenInFront(*chart_, {.title = "MetaStock Pro"});
  const Window other = OpenInFront(*editor_, {.title = "Notes about MetaStock"});
  ASSERT_TRUE(Eventually([&] { return windows_->TopLevelWindows().size() == 3; }));
  EXPECT_FALSE(windows_->BringToFront("Börse"));
  EXPECT_TRUE(windows_->BringToFront("Notes"));
  EXPECT_TRUE(windows_->BringToFront("MetaStock Pro"));
  EXPECT_THAT(windows_->TopLevelWindows(), ElementsAre(exact, other, longer));
  EXPECT_TRUE(windows_->BringToFront("MetaStock B"));
  EXPECT_THAT(windows_->TopLevelWindows(), ElementsAre(longer, exact, other));
  EXPECT_EQ(windows_->WindowTitle(longer), "MetaStock Börse");
  chart_->Close(exact);
  EXPECT_TRUE(Eventually([&] { return windows_->WindowTitle(exact).empty(); }));
  EXPECT_FALSE(windows_->IsWindowVisible(exact));
  EXPECT_FALSE(windows_->HasOwner(exact));
  windows_->Maximize(exact);
}

TEST_F(X11, TheChartProgramComesBackFromAnywhereAndFillsTheScreen) {
  const Window chart = OpenInFront(*chart_, kChart);
  OpenInFront(*editor_, {.title = "Notes"});
  chart_->Iconify(chart);
  ASSERT_TRUE(Eventually([&] { return !windows_->IsWindowVisible(chart); }));
  EXPECT_TRUE(windows_->BringToFront("MetaStock"));
  EXPECT_TRUE(windows_->IsWindowVisible(chart));
  EXPECT_EQ(keys_->Send("a"), KeyOutcome::kTakenIn);
  chart_->MoveToWorkspace(chart, 1);
  ASSERT_TRUE(Eventually([&] { return keys_->Send("b") == KeyOutcome::kHeldBack; }));
  chart_->TakeTyped(chart);
  EXPECT_TRUE(windows_->BringToFront("MetaStock"));
  EXPECT_EQ(keys_->Send("c"), KeyOutcome::kTakenIn);
  EXPECT_EQ(chart_->TakeTyped(chart), "c");
  windows_->Maximize(chart);
  EXPECT_TRUE(Eventually([&] {
    return chart_->HasState(chart, "_NET_WM_STATE_MAXIMIZED_VERT") &&
           chart_->HasState(chart, "_NET_WM_STATE_MAXIMIZED_HORZ");
  }));
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
  chart_->Close(dialog);
  EXPECT_TRUE(Eventually([&] { return !exists(); }));
  // A dialog that a helper of the chart program shows for it.
  const Window helper = OpenInFront(*editor_, {.title = "Open", .owner = chart});
  EXPECT_TRUE(Eventually(exists));
  ASSERT_TRUE(windows_->BringToFront("Open"));
  EXPECT_EQ(keys_->Send("x"), KeyOutcome::kTakenIn);
  EXPECT_EQ(editor_->TakeTyped(helper), "x");
}

TEST_F(X11, ADialogThatIsFoundTakesTheKeysWhateverTheTraderClickedMeanwhile) {
  const Window chart = OpenInFront(*chart_, kChart);
  const Window dialog = OpenInFront(*chart_, {.title = "Open", .owner = chart});
  const Window notes = OpenInFront(*editor_, {.title = "Notes"});
  ASSERT_TRUE(windows_->DialogExists("#32770", "Open"));
  EXPECT_EQ(keys_->Send("x"), KeyOutcome::kTakenIn);
  EXPECT_EQ(chart_->TakeTyped(dialog), "x");
  EXPECT_EQ(editor_->TakeTyped(notes), "");
}

TEST_F(X11, KeysArriveAsWritten) {
  const Window chart = OpenInFront(*chart_, kChart);
  ASSERT_TRUE(windows_->BringToFront("MetaStock"));
  const std::vector<std::pair<std::string, std::string>> texts{
      {"%Fe", "%fe"},
      {"%VR", "%vR"},
      {"^{TAB}", "^<Tab>"},
      {"{SPACE}{ENTER}~", " <Return><Return>"},
      {"{END}{TAB}S", "<End><Tab>S"},
      {"%+x^%{END}+(ab)", "%+x^%<End>AB"},
      {"", ""},
  };
  for (const bool caps_lock : {false, true}) {
    Person person(server_->Display());
    person.SetCapsLock(caps_lock);
    for (const auto& [keys, typed] : texts) {
      EXPECT_EQ(keys_->Send(keys), KeyOutcome::kTakenIn);
      EXPECT_EQ(chart_->TakeTyped(chart), typed) << keys << " Caps Lock " << caps_lock;
    }
    EXPECT_EQ(person.HasCapsLock(), caps_lock);
  }
  EXPECT_THROW(keys_->Send("%"), std::invalid_argument);
  EXPECT_THROW(keys_->Send("a\x01"), std::invalid_argument);
  EXPECT_THROW(keys_->Send("a\nb"), std::invalid_argument);
  EXPECT_EQ(chart_->TakeTyped(chart), "");
}

TEST_F(X11, NobodyElsesWindowReceivesAKey) {
  const std::vector<TypingTarget::Look> others{
      {.title = "Notes"}, {.title = "Open"}, {.title = "MetaStock Data"}, {.title = "MetaStock"}};
  const Window chart = OpenInFront(*chart_, {.title = "MetaStock", .program_file = "MSWIN.EXE"});
  for (const auto& look : others) {
    const Window other = OpenInFront(*editor_, look);
    EXPECT_EQ(keys_->Send("%Fe"), KeyOutcome::kHeldBack) << look.title;
    EXPECT_THAT(editor_->TakeTyped(other), IsEmpty()) << look.title;
    EXPECT_TRUE(windows_->BringToFront("MetaStock"));
    EXPECT_EQ(keys_->Send("%Fe"), KeyOutcome::kTakenIn) << look.title;
    EXPECT_EQ(chart_->TakeTyped(chart), "%fe") << look.title;
    editor_->Close(other);
  }
  // Its own message box isn't for these keys either.
  const Window box = OpenInFront(*chart_, {.title = "Error", .owner = chart});
  ASSERT_TRUE(windows_->BringToFront("Error"));
  EXPECT_EQ(keys_->Send("{ENTER}"), KeyOutcome::kHeldBack);
  EXPECT_THAT(chart_->TakeTyped(box), IsEmpty());
}

TEST_F(X11, ATraderWhoTypesElsewhereLosesNoKeyToARefresh) {
  const Window chart = OpenInFront(*chart_, kChart);
  const Window notes = OpenInFront(*editor_, {.title = "Notes"});
  Person person(server_->Display());
  constexpr int kLetters = 60;
  std::thread typing([&] {
    for (int i = 0; i < kLetters; ++i) {
      person.Press(i % 2 == 0 ? "l" : "s");
      std::this_thread::sleep_for(milliseconds(25));
    }
  });
  std::string refreshes;
  for (int i = 0; i < 10; ++i) {
    EXPECT_EQ(keys_->SendBehind("%VR"), KeyOutcome::kTakenIn);
    EXPECT_EQ(windows_->FocusedWindow(), notes);
    refreshes += "%vR";
    std::this_thread::sleep_for(milliseconds(100));
  }
  typing.join();
  EXPECT_TRUE(Eventually([&] { return editor_->Typed(notes).size() >= kLetters; }));
  std::string letters;
  for (int i = 0; i < kLetters / 2; ++i) letters += "ls";
  EXPECT_EQ(editor_->TakeTyped(notes), letters);
  EXPECT_EQ(chart_->TakeTyped(chart), refreshes);
  EXPECT_THAT(windows_->TopLevelWindows(), ElementsAre(notes, chart)) << "nothing was raised";

  // An open menu takes all keys, wherever the focus is.
  person.KeepKeyboard();
  EXPECT_EQ(keys_->SendBehind("%VR"), KeyOutcome::kHeldBack);
  person.LeaveKeyboard();
  chart_->Iconify(chart);
  ASSERT_TRUE(Eventually([&] { return !windows_->IsWindowVisible(chart); }));
  EXPECT_EQ(keys_->SendBehind("%VR"), KeyOutcome::kHeldBack);
  EXPECT_FALSE(windows_->IsWindowVisible(chart)) << "an icon stays an icon";
  EXPECT_THAT(editor_->TakeTyped(notes), IsEmpty());
}

TEST_F(X11, TheFocusIsKnownAndGivenBack) {
  const Window chart = OpenInFront(*chart_, kChart);
  const Window notes = OpenInFront(*editor_, {.title = "Notes"});
  EXPECT_EQ(windows_->FocusedWindow(), notes);
  EXPECT_EQ(windows_->OwnerOf(notes), WindowOwner::kOther);
  EXPECT_EQ(windows_->OwnerOf(chart), WindowOwner::kChartProgram);
  ASSERT_TRUE(windows_->BringToFront("MetaStock"));
  EXPECT_EQ(windows_->FocusedWindow(), chart);
  EXPECT_TRUE(windows_->GiveFocus(notes));
  EXPECT_EQ(windows_->FocusedWindow(), notes);
  editor_->Close(notes);
  EXPECT_FALSE(windows_->GiveFocus(notes));
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
  EXPECT_EQ(keys_->Send("ab%xcd"), KeyOutcome::kHeldBack);
  EXPECT_EQ(chart_->TakeTyped(chart), "ab%x");
  EXPECT_THAT(editor_->TakeTyped(notes), IsEmpty());
}

TEST_F(X11, KeysWaitWhileAPersonHoldsAModifier) {
  const Window chart = OpenInFront(*chart_, kChart);
  ASSERT_TRUE(windows_->BringToFront("MetaStock"));
  Person person(server_->Display());
  for (const char* const key : {"Shift_R", "Super_L"}) {
    person.Hold(key);
    EXPECT_EQ(keys_->Send("a"), KeyOutcome::kHeldBack) << key;
    EXPECT_TRUE(person.HoldsModifier()) << key;
    std::thread later([&] {
      std::this_thread::sleep_for(milliseconds(150));
      person.LetGo(key);
    });
    EXPECT_EQ(keys_->Send("b"), KeyOutcome::kTakenIn) << key;
    later.join();
    EXPECT_EQ(chart_->TakeTyped(chart), "b") << key;
  }
}

TEST_F(X11, TakenInMeansThatTheProgramHasReadTheKeys) {
  const Window chart = OpenInFront(*chart_, kChart);
  ASSERT_TRUE(windows_->BringToFront("MetaStock"));
  chart_->SetBusy(true);
  std::thread later([&] {
    std::this_thread::sleep_for(milliseconds(300));
    chart_->SetBusy(false);
  });
  EXPECT_EQ(keys_->Send("%VR"), KeyOutcome::kTakenIn);
  EXPECT_EQ(chart_->TakeTyped(chart), "%vR");
  later.join();

  chart_->SetBusy(true);
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(keys_->Send("%VR"), KeyOutcome::kNotAnswered);
  const auto took = std::chrono::steady_clock::now() - start;
  EXPECT_GE(took, milliseconds(1900));
  EXPECT_LE(took, milliseconds(6000));
  chart_->SetBusy(false);
  EXPECT_TRUE(Eventually([&] { return chart_->TakeTyped(chart) == "%vR"; }));
}

TEST_F(X11, AWindowThatClosesOrCantAnswerIsNoFailure) {
  const Window chart = OpenInFront(*chart_, kChart);
  OpenInFront(*chart_, {.title = "Open", .owner = chart, .closes_at_enter = true});
  EXPECT_EQ(keys_->Send("{ENTER}"), KeyOutcome::kTakenIn);
  const Window mute = OpenInFront(*chart_, {.title = "MetaStock mute", .answers_pings = false});
  ASSERT_TRUE(windows_->BringToFront("MetaStock mute"));
  EXPECT_EQ(keys_->Send("abc"), KeyOutcome::kTakenIn);
  EXPECT_TRUE(Eventually([&] { return chart_->TakeTyped(mute) == "abc"; }));
}

TEST_F(X11WithoutWindowManager, WindowsStillComeUpAndTakeKeys) {
  EXPECT_FALSE(windows_->BringToFront("MetaStock"));
  EXPECT_EQ(keys_->Send("a"), KeyOutcome::kHeldBack);
  const Window chart = chart_->Open(kChart);
  const Window notes = editor_->Open({.title = "Notes"});
  EXPECT_TRUE(windows_->BringToFront("MetaStock"));
  EXPECT_THAT(windows_->TopLevelWindows(), ElementsAre(chart, notes));
  EXPECT_EQ(keys_->Send("%VR"), KeyOutcome::kTakenIn);
  EXPECT_EQ(chart_->TakeTyped(chart), "%vR");
  EXPECT_TRUE(windows_->BringToFront("Notes"));
  EXPECT_EQ(keys_->Send("%VR"), KeyOutcome::kHeldBack);
  EXPECT_THAT(editor_->TakeTyped(notes), IsEmpty());
  windows_->Maximize(chart);
  EXPECT_TRUE(windows_->IsWindowVisible(chart));
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
      EXPECT_EQ(keys_->Send(EscapedKeys(text) + "%F"), KeyOutcome::kTakenIn);
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
  EXPECT_EQ(keys_->Send("bäก"), KeyOutcome::kTakenIn);
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
  EXPECT_EQ(keys_->Send(text), KeyOutcome::kTakenIn);
  EXPECT_EQ(chart_->TakeTyped(chart), text);
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
  EXPECT_THROW(windows.IsWindowVisible(1), std::runtime_error);
  EXPECT_THROW(windows.Maximize(1), std::runtime_error);
  EXPECT_THROW(keys.Send("%VR"), std::runtime_error);
}

}  // namespace
}  // namespace velumar
