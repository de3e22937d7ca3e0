// The chart program's windows and keys on every system.
#include <chrono>
#include <stdexcept>
#include <thread>

#include "platform/key_fixture.h"

namespace velumar {
namespace {

using std::chrono_literals::operator""ms;

constexpr const char* kOther = "VelumarTestOther";

using WindowKeys = KeyFixture;

TEST_F(WindowKeys, BringsAWindowToTheFrontByItsTitle) {
  const std::string title = std::string(kHost) + " - [B\u00f6rse]";
  const WindowId longer = driver->OpenChart(title);
  const WindowId chart = driver->OpenChart(kHost);
  const WindowId other = driver->OpenOther(kOther);
  EXPECT_TRUE(ComesToFront(kHost, chart)) << "the exact title comes first";
  driver->Minimise(longer);
  EXPECT_TRUE(Eventually([&] { return !Windows().IsWindowVisible(longer); }));
  EXPECT_TRUE(ComesToFront(title.substr(0, title.size() - 3), longer));
  EXPECT_FALSE(Windows().BringToFront("VelumarTestNobody"));
  EXPECT_TRUE(Eventually([&] { return Windows().FocusedWindow() == longer; }))
      << "a failure changes nothing";
  EXPECT_TRUE(GetsFocus(other));
  driver->Minimise(chart);
  EXPECT_TRUE(Eventually([&] { return !Windows().IsWindowVisible(chart); }));
  EXPECT_FALSE(Windows().GiveFocus(chart));
  EXPECT_THAT(Windows().TopLevelWindows(), Contains(longer));
  EXPECT_EQ(Windows().WindowTitle(longer), title);
  EXPECT_FALSE(Windows().HasOwner(longer));
}

TEST_F(WindowKeys, SendsKeysAsWritten) {
  const WindowId chart = driver->OpenChart(kHost);
  for (const bool caps_lock : {false, true}) {
    driver->SetCapsLock(caps_lock);
    driver->Taken(chart);
    for (const auto& [keys, typed] :
         std::vector<std::pair<std::string, std::string>>{{"%Fe", "%fe"},
                                                          {"%VR", "%vR"},
                                                          {"^{TAB}x", "^<Tab>x"},
                                                          {"{SPACE}{ENTER}~", " <Return><Return>"},
                                                          {"{END}{TAB}S", "<End><Tab>S"},
                                                          {"aZ 1!", "aZ 1!"},
                                                          {"", ""}}) {
      EXPECT_EQ(Keys().Send(keys), KeyOutcome::kAccepted);
      EXPECT_EQ(Taken(chart, typed.size()), typed) << keys << " Caps Lock " << caps_lock;
    }
    driver->PressL();
    EXPECT_EQ(Taken(chart, 1), caps_lock ? "L" : "l") << "Caps Lock is as the trader left it";
  }
  EXPECT_THROW(Keys().Send("a\x01"), std::invalid_argument);
  EXPECT_EQ(driver->Taken(chart), "");
}

TEST_F(WindowKeys, ARefreshTakesNoKeyFromATraderWhoTypesElsewhere) {
  constexpr int kLetters = 10;
  constexpr int kRefreshes = 6;
  const WindowId chart = driver->OpenChart(kHost);
  const WindowId other = driver->OpenOther(kOther);
  EXPECT_EQ(Keys().Send("secret"), KeyOutcome::kNotSent);
  EXPECT_EQ(driver->Taken(other) + driver->Taken(chart), "");
  int accepted = 0;
  for (int i = 0; accepted < kRefreshes && i < 10 * kRefreshes; ++i) {
    std::thread typing([&] {
      for (int letter = 0; letter < kLetters; ++letter) {
        driver->PressL();
        std::this_thread::sleep_for(25ms);
      }
    });
    std::this_thread::sleep_for(50ms);
    const bool done = Keys().SendInBackground("%VR") == KeyOutcome::kAccepted &&
                      Windows().FocusedWindow() == other;
    typing.join();
    if (done) {
      ++accepted;
      EXPECT_EQ(Taken(other, kLetters), std::string(kLetters, 'l'));
      EXPECT_EQ(Taken(chart, 3), "%vR");
    } else {
      // On a busy machine time may run out. Even then the letters don't reach the chart.
      EXPECT_TRUE(GetsFocus(other));
      EXPECT_THAT(driver->Taken(chart), testing::Not(testing::HasSubstr("l")));
      driver->Taken(other);
    }
  }
  EXPECT_EQ(accepted, kRefreshes);
}

TEST_F(WindowKeys, WaitsWhileTheUserHoldsAModifier) {
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

TEST_F(WindowKeys, AcceptedMeansThatTheProgramHasReadTheKeys) {
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
  EXPECT_EQ(Keys().Send("x"), KeyOutcome::kNotAnswered);
  driver->SetBusy(chart, false);
  EXPECT_EQ(Taken(chart, 1), "x");
}

}  // namespace
}  // namespace velumar
