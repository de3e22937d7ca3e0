#pragma once

#include <optional>

#include "key_driver.h"
#include "platform/eventually.h"
#include "support/matchers.h"

namespace velumar {

// Tests of the chart program's windows and keys; key_driver.h drives the system's own.
struct KeyFixture : testing::Test {
  static constexpr const char* kHost = "MetaStock";

  void SetUp() override {
    if (!KeyDriver::Available()) GTEST_SKIP() << "Xvfb, openbox or setxkbmap isn't installed";
    Open();
  }
  virtual void Open() { driver.emplace(); }
  ChartWindows& Windows() { return driver->Windows(); }
  KeySender& Keys() { return driver->Keys(); }
  // What the window receives, once there are `length` bytes.
  std::string Taken(WindowId window, std::size_t length) {
    std::string taken;
    Eventually([&] {
      taken += driver->Taken(window);
      return taken.size() >= length;
    });
    return taken;
  }
  // Both repeat the call, which on a busy machine may stop waiting before the window has the focus.
  bool ComesToFront(const std::string& title, WindowId window) {
    return Eventually(
        [&] { return Windows().BringToFront(title) && Windows().FocusedWindow() == window; });
  }
  bool GetsFocus(WindowId window) {
    return Eventually(
        [&] { return Windows().GiveFocus(window) && Windows().FocusedWindow() == window; });
  }

  std::optional<KeyDriver> driver;
};

}  // namespace velumar
