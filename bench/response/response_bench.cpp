// response_bench: how long a trader waits for the chart, from the key or click to the bar on the
// screen, in a series of 32,767 bars. Needs a display with a window manager to itself.

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <memory>
#include <stdexcept>
#include <thread>

extern "C" {
#include <xdo.h>
}

#include "base/dates.h"
#include "e2e/desktop_hand.h"
#include "e2e/running_program.h"
#include "forms/desktop.h"
#include "large_directory.h"
#include "platform/chart_program.h"
#include "platform/qt/settings_file.h"
#include "support/scratch_folder.h"

namespace velumar {
namespace {

using Clock = std::chrono::steady_clock;
using std::chrono_literals::operator""ms;

constexpr int kBars = 32767;
constexpr int kStartBar = 20000;

double Milliseconds(Clock::duration time) {
  return std::chrono::duration<double, std::milli>(time).count();
}

// Presses keys and buttons without the start of another program in between.
class Input {
 public:
  Input() : xdo_(xdo_new(nullptr), xdo_free) {
    if (!xdo_) throw std::runtime_error("no display");
  }

  void KeyDown(const char* key) {
    xdo_send_keysequence_window_down(xdo_.get(), CURRENTWINDOW, key, 0);
  }
  void KeyUp(const char* key) { xdo_send_keysequence_window_up(xdo_.get(), CURRENTWINDOW, key, 0); }
  void Tap(const char* key) {
    KeyDown(key);
    KeyUp(key);
  }
  void Click() {
    xdo_mouse_down(xdo_.get(), CURRENTWINDOW, 1);
    xdo_mouse_up(xdo_.get(), CURRENTWINDOW, 1);
  }

 private:
  std::unique_ptr<xdo_t, decltype(&xdo_free)> xdo_;
};

void Require(bool condition, const std::string& what) {
  if (!condition) throw std::runtime_error("no sign of " + what);
}

bool Within(std::chrono::milliseconds time, const std::function<bool()>& condition) {
  const auto end = Clock::now() + time;
  while (!condition()) {
    if (Clock::now() > end) return false;
    std::this_thread::sleep_for(std::chrono::microseconds(200));
  }
  return true;
}

// A program writes a line as soon as it has drawn, so the size of its output is a clock.
std::size_t SizeOf(const std::filesystem::path& output) {
  std::error_code none;
  return std::filesystem::exists(output) ? std::filesystem::file_size(output, none) : 0;
}

// From each key to the repainted window, sorted.
std::vector<double> TimesOf(Input& input, const char* key, int count,
                            const std::filesystem::path& output) {
  std::vector<double> times;
  for (int i = 0; i < count; ++i) {
    const std::size_t before = SizeOf(output);
    const auto began = Clock::now();
    input.Tap(key);
    Require(Within(5000ms, [&] { return SizeOf(output) > before; }), "a repainted window");
    times.push_back(Milliseconds(Clock::now() - began));
    std::this_thread::sleep_for(60ms);
  }
  std::sort(times.begin(), times.end());
  return times;
}

// The bound: a window of the same size that only fills itself.
std::vector<double> BareRepaints(int count) {
  const ScratchFolder scratch;
  const std::filesystem::path output = scratch.Sub("output");
  const std::unique_ptr<FILE, decltype(&pclose)> window(
      popen(("exec " VELUMAR_BARE_WINDOW " > " + output.string()).c_str(), "w"), pclose);
  const DesktopHand hand;
  Require(window && Eventually([&] { return hand.FrontTitle() == "Bare window"; }), "a window");
  Input input;
  std::vector<double> times = TimesOf(input, "Right", count, output);
  input.Tap("Escape");
  return times;
}

class Trader {
 public:
  explicit Trader(const char* delay) {
    FileSettings settings(scratch_.Sub("settings"));
    settings.Save("LastPath", directory_.Text());
    settings.Save("Refresh", delay);
    settings.Save("SelectDate", DateText(LargeDirectoryDate(kStartBar), "M/d/yyyy"));
    program_ = std::make_unique<RunningProgram>(scratch_.Path(), output_);
    Require(Eventually([&] { return Find(setup_).has_value(); }), "the setup window");
    std::this_thread::sleep_for(2000ms);  // the window slides in
  }

  // From the click on Start to a chart with bars.
  double Start() {
    PointAt(setup_, setup_.Image3);
    const std::size_t before = SizeOf(output_);
    const auto began = Clock::now();
    input_.Click();
    Require(Within(30000ms, [&] { return SizeOf(output_) > before && Bars() > kStartBar; }),
            "a chart");
    return Milliseconds(Clock::now() - began);
  }
  void Return() {
    PointAt(navigator_, navigator_.Image5);
    input_.Click();
    Require(Eventually([&] { return Find(setup_).has_value(); }), "the setup window");
    std::this_thread::sleep_for(2500ms);
  }
  void Play() { PressPlayOrPause(); }
  // Requires that the feed has stopped: its bars would pass for steps.
  void Pause() {
    PressPlayOrPause();
    const int paused = Bars();
    std::this_thread::sleep_for(300ms);
    Require(Bars() == paused, "a pause");
  }
  // From the key to the changed chart, sorted.
  std::vector<double> Steps(const char* key, int count, int bars) {
    const int first = Bars();
    std::vector<double> times = TimesOf(input_, key, count, output_);
    Require(Bars() == first + count * bars, "all steps");
    return times;
  }
  double BarsPerSecond() {
    constexpr auto kTime = 5000ms;
    const int before = Bars();
    std::this_thread::sleep_for(kTime);
    return (Bars() - before) / std::chrono::duration<double>(kTime).count();
  }
  // Bars per second while the key is down, and the bars after it is up.
  std::pair<double, int> Hold(const char* key) {
    constexpr auto kTime = 4000ms;
    const int before = Bars();
    input_.KeyDown(key);
    std::this_thread::sleep_for(kTime);
    input_.KeyUp(key);
    const int at_release = Bars();
    std::this_thread::sleep_for(1000ms);
    return {(at_release - before) / std::chrono::duration<double>(kTime).count(),
            Bars() - at_release};
  }
  // Opens the store once more in the chart program, as its chart of that number.
  void OpenAnotherChart(int charts) {
    hand_.Activate(std::string(kChartTitle));
    hand_.Press("alt+f");
    hand_.Press("o");
    std::this_thread::sleep_for(700ms);
    hand_.Type(directory_.Text() + "/Simulate");
    hand_.Press("Return");
    std::this_thread::sleep_for(300ms);
    hand_.Type("S0");
    hand_.Press("Return");
    Require(Within(5000ms, [&] { return program_->States().back()["charts"] == charts; }),
            "another chart");
  }

 private:
  // Brings the navigator to the front and types the key that plays and pauses.
  void PressPlayOrPause() {
    const auto window = Find(navigator_);
    Require(window.has_value(), "the navigator");
    hand_.Activate(*window);
    input_.Tap("space");
    std::this_thread::sleep_for(1500ms);
  }
  std::optional<ScreenRect> Find(const Form& form) const {
    return hand_.Find(form.Name() == "Form1" ? "Velumar1.0" : "Velumar", form.Width(),
                      form.Height());
  }
  void PointAt(const Form& form, const Control& control) {
    const auto window = Find(form);
    Require(window.has_value(), form.Name());
    hand_.PointAt(window->x + static_cast<int>(control.Left() + control.Width() / 2) / 15,
                  window->y + static_cast<int>(control.Top() + control.Height() / 2) / 15);
  }
  int Bars() const {
    const auto states = program_->States();
    if (states.empty() || states.back()["chart"].is_null()) return -1;
    return states.back()["chart"]["bars"].get<int>();
  }

  ScratchFolder scratch_;
  LargeDirectory directory_{1, kBars, 10};
  std::filesystem::path output_ = scratch_.Sub("output");
  Desktop tables_;
  Form1& setup_ = tables_.Untouched().form1;
  Form2& navigator_ = tables_.Untouched().form2;
  DesktopHand hand_;
  Input input_;
  std::unique_ptr<RunningProgram> program_;
};

void Line(const char* what, double measured, const char* unit, const char* goal) {
  std::printf("%-44s %9.1f %s   (goal %s)\n", what, measured, unit, goal);
  std::fflush(stdout);
}

void Measure() {
  constexpr int kSteps = 200;
  const std::vector<double> bare = BareRepaints(kSteps);
  Trader trader("0.001");
  Line("Start to the chart, program not running", trader.Start(), "ms", "2000");
  Line("Feed at the shortest pause, one chart", trader.BarsPerSecond(), "bars/s", "25");
  trader.Pause();
  const std::vector<double> steps = trader.Steps("Right", kSteps, 1);
  Line("Next to the changed chart, median of 200", steps[kSteps / 2], "ms", "50");
  Line("Next to the changed chart, worst of 200", steps.back(), "ms", "100");
  Line("  a bare repaint of this size, median", bare[kSteps / 2], "ms", "the bound");
  Line("  a bare repaint of this size, worst", bare.back(), "ms", "the bound");
  constexpr int kFastSteps = 20;
  Line("30 bars forward, median of 20", trader.Steps("Next", kFastSteps, 30)[kFastSteps / 2], "ms",
       "80");
  Line("30 bars back, median of 20", trader.Steps("Prior", kFastSteps, -30)[kFastSteps / 2], "ms",
       "80");
  const auto [held, after] = trader.Hold("Right");
  Line("Right held down", held, "bars/s", "as the feed");
  Line("Bars after its release", after, "bars", "1");
  for (int chart = 2; chart <= 4; ++chart) trader.OpenAnotherChart(chart);
  trader.Play();
  Line("Feed at the shortest pause, four charts", trader.BarsPerSecond(), "bars/s", "15");
  trader.Pause();
  trader.Return();
  Line("Start to the chart, program running", trader.Start(), "ms", "700");
}

}  // namespace
}  // namespace velumar

int main() {
  try {
    velumar::Measure();
    return EXIT_SUCCESS;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "response_bench: %s\n", error.what());
    return EXIT_FAILURE;
  }
}
