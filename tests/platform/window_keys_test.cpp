// The windows and keys of the chart program, with what the system's own key_driver.h drives.
#include <chrono>
#include <optional>
#include <stdexcept>
#include <thread>

#include "key_driver.h"

namespace velumar {
namespace {

using std::chrono_literals::operator""ms;

constexpr const char* kHost = KeyDriver::kHost;
constexpr const char* kOther = "VelumarTestOther";

class WindowKeys : public ::testing::Test {
 protected:
  void SetUp() override {
    if (!KeyDriver::Available()) GTEST_SKIP() << "Xvfb, openbox or setxkbmap isn't installed";
    driver.emplace();
  }
  ChartWindows& Windows() { return driver->windows; }
  KeySender& Keys() { return driver->keys; }
  // What is typed within a second, on a busy machine too.
  std::string Taken(WindowId window, std::size_t length) {
    std::string taken = driver->Taken(window);
    for (int wait = 0; wait < 100 && taken.size() < length; ++wait) {
      std::this_thread::sleep_for(10ms);
      taken += driver->Taken(window);
    }
    return taken;
  }

  // On a busy machine the focus moves after the call that asked for it has given up waiting.
  bool GetsFocus(WindowId window) {
    for (int wait = 0; wait < 100 && Windows().FocusedWindow() != window; ++wait) {
      std::this_thread::sleep_for(10ms);
    }
    return Windows().FocusedWindow() == window;
  }

  std::optional<KeyDriver> driver;
};

TEST_F(WindowKeys, AWindowComesToTheFrontByItsTitle) {
  const std::string title = std::string(kHost) + " - [Alpha]";
  const WindowId longer = driver->OpenChart(title);
  const WindowId chart = driver->OpenChart(kHost);
  const WindowId other = driver->OpenOther(kOther);
  EXPECT_TRUE(Windows().BringToFront(kHost));
  EXPECT_TRUE(GetsFocus(chart)) << "the exact title comes first";
  driver->Minimise(longer);
  EXPECT_TRUE(Windows().BringToFront(title.substr(0, title.size() - 3)));
  EXPECT_TRUE(GetsFocus(longer));
  EXPECT_TRUE(Windows().IsWindowVisible(longer));
  EXPECT_FALSE(Windows().BringToFront("VelumarTestNobody"));
  EXPECT_EQ(Windows().FocusedWindow(), longer) << "a failure changes nothing";
  EXPECT_TRUE(Windows().GiveFocus(other));
  EXPECT_TRUE(GetsFocus(other));
  driver->Minimise(chart);
  for (int wait = 0; wait < 100 && Windows().IsWindowVisible(chart); ++wait) {
    std::this_thread::sleep_for(10ms);
  }
  EXPECT_FALSE(Windows().GiveFocus(chart));
  EXPECT_THAT(Windows().TopLevelWindows(), testing::Contains(longer));
  EXPECT_EQ(Windows().WindowTitle(longer), title);
  EXPECT_FALSE(Windows().HasOwner(longer));
}

TEST_F(WindowKeys, KeysArriveAsWritten) {
  const WindowId chart = driver->OpenChart(kHost);
  const std::vector<std::pair<std::string, std::string>> texts{
      {"%Fe", "%fe"},
      {"%VR", "%vR"},
      {"^{TAB}x", "^<Tab>x"},
      {"{SPACE}{ENTER}~", " <Return><Return>"},
      {"{END}{TAB}S", "<End><Tab>S"},
      {"aZ 1!", "aZ 1!"},
      {"", ""},
  };
  for (const bool caps_lock : {false, true}) {
    driver->SetCapsLock(caps_lock);
    driver->Taken(chart);
    for (const auto& [keys, typed] : texts) {
      EXPECT_EQ(Keys().Send(keys), KeyOutcome::kAccepted);
      EXPECT_EQ(Taken(chart, typed.size()), typed) << keys << " Caps Lock " << caps_lock;
    }
    EXPECT_EQ(driver->HasCapsLock(), caps_lock);
  }
  for (const char* const keys : {"%", "a\x01", "a\nb"}) {
    EXPECT_THROW(Keys().Send(keys), std::invalid_argument);
  }
  EXPECT_EQ(driver->Taken(chart), "");
}

TEST_F(WindowKeys, ATraderWhoTypesElsewhereLosesNoKeyToARefresh) {
  constexpr int kLetters = 60;
  const WindowId chart = driver->OpenChart(kHost);
  const WindowId other = driver->OpenOther(kOther);
  EXPECT_EQ(Keys().Send("secret"), KeyOutcome::kNotSent);
  EXPECT_EQ(driver->Taken(other) + driver->Taken(chart), "");
  std::thread typing([&] {
    for (int i = 0; i < kLetters; ++i) {
      driver->PressL();
      std::this_thread::sleep_for(25ms);
    }
  });
  std::string refreshes;
  for (int i = 0; i < 6; ++i) {
    EXPECT_EQ(Keys().SendBehind("%VR"), KeyOutcome::kAccepted);
    EXPECT_EQ(Windows().FocusedWindow(), other);
    refreshes += "%vR";
    std::this_thread::sleep_for(100ms);
  }
  typing.join();
  EXPECT_EQ(Taken(other, kLetters), std::string(kLetters, 'l'));
  EXPECT_EQ(Taken(chart, refreshes.size()), refreshes);
}

TEST_F(WindowKeys, KeysWaitWhileAPersonHoldsAModifier) {
  const WindowId chart = driver->OpenChart(kHost);
  driver->HoldShift(true);
  EXPECT_EQ(Keys().Send("a"), KeyOutcome::kNotSent);
  std::thread later([&] {
    std::this_thread::sleep_for(300ms);
    driver->HoldShift(false);
  });
  EXPECT_EQ(Keys().Send("abc"), KeyOutcome::kAccepted);
  later.join();
  EXPECT_EQ(Taken(chart, 3), "abc");
}

TEST_F(WindowKeys, TakenInMeansThatTheProgramHasReadTheKeys) {
  const WindowId chart = driver->OpenChart(kHost);
  driver->Taken(chart);
  driver->SetBusy(chart, true);
  std::thread later([&] {
    std::this_thread::sleep_for(300ms);
    driver->SetBusy(chart, false);
  });
  EXPECT_EQ(Keys().Send("%VR"), KeyOutcome::kAccepted);
  EXPECT_EQ(driver->Taken(chart), "%vR");
  later.join();

  driver->SetBusy(chart, true);
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(Keys().Send("x"), KeyOutcome::kNotAnswered);
  const auto took = std::chrono::steady_clock::now() - start;
  EXPECT_GE(took, 1900ms);
  EXPECT_LE(took, 6000ms);
  driver->SetBusy(chart, false);
  EXPECT_EQ(Taken(chart, 1), "x");
}

}  // namespace
}  // namespace velumar
