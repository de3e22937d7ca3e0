#include "shell/window_shaping.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <stdexcept>

#include "base/number_text.h"

namespace velumar {

namespace {

constexpr int kSlideStep = 50;   // twips
constexpr int kSlidePause = 10;  // ms
constexpr int kMostSlideSteps = 15;
constexpr float kTitleBar = 360;  // twips of a title bar
constexpr float kFirstPlaceBottomGap = 500;
constexpr float kFirstPlaceSideGap = 50;
constexpr float kNavigatorFirstLeft = 100;
constexpr float kNavigatorFirstHeights = 2.5F;

std::int16_t Measure(float twips) {
  return static_cast<std::int16_t>(std::nearbyint(std::clamp(twips, 0.0F, 32767.0F)));
}

// Throws std::invalid_argument for a text that is not a number.
void LimitPlace(std::string& place, float size, std::int16_t measure) {
  const std::optional<double> wanted = ToDouble(place);
  if (!wanted) throw std::invalid_argument("not a window position");
  if (*wanted > INT16_MAX) place = PlaceText(static_cast<float>(measure) - size);
}

// Comes to rest where single steps would end. Returns false if the slide was ended early.
bool Slide(Form& window, int from, int to, int step, int rest_top, EventLoop& events) {
  const int slide = window.BeginSlide(static_cast<float>(rest_top));
  clsWaitableTimer timer(events);
  const bool has_steps = step > 0 ? from <= to : from >= to;
  const int last = has_steps ? (to - from) / step : -1;
  const int stride = std::max((last + kMostSlideSteps - 1) / kMostSlideSteps, 1);
  for (int at = 0; at <= last && window.Slides(slide);
       at = at < last ? std::min(at + stride, last) : last + 1) {
    window.SetTop(static_cast<float>(from + at * step));
    timer.Wait(kSlidePause);
  }
  window.EndSlide(slide);
  return window.Slides(slide);
}

}  // namespace

void ShapeSmallWindow(Form& window) {
  constexpr int kCornerWidth = 15;  // pixels
  constexpr int kCornerHeight = 12;
  window.SetTopmost(true);
  window.SetCorners(kCornerWidth, kCornerHeight);
}

void LoadOpacity(Form& window, Slider& slider, const SettingsStore& settings,
                 std::string_view key) {
  constexpr int kDefault = 250;
  const std::optional<std::int16_t> kept = ToInt16(settings.Read(key).value_or(""));
  const bool usable = kept && *kept >= slider.Limits().low && *kept <= slider.Limits().high;
  slider.SetValue(usable ? *kept : kDefault);
  window.SetOpacity(slider.Value());
}

std::int16_t ScreenWidth(const Screen& screen) { return Measure(screen.WidthTwips()); }

std::int16_t ScreenHeight(const Screen& screen) { return Measure(screen.HeightTwips()); }

std::int16_t PlaceFromText(std::string_view text) {
  if (const std::optional<std::int16_t> place = ToInt16(text)) return *place;
  const std::optional<double> far = ToDouble(text);
  if (!far) throw std::invalid_argument("\"" + std::string(text) + "\" is not a window position");
  return *far < 0 ? INT16_MIN : INT16_MAX;
}

bool IsShownAt(std::string& top, std::string& left, const Form& window, const Screen& screen) {
  try {
    LimitPlace(top, window.Height(), ScreenHeight(screen));
    LimitPlace(left, window.Width(), ScreenWidth(screen));
    return screen.Shows(PlaceFromText(left), PlaceFromText(top), window.Width(), window.Height());
  } catch (const std::invalid_argument&) {
    return false;
  }
}

bool CanRestorePlace(std::string& top, std::string& left, const Form& window,
                     const Screen& screen) {
  return top != "0" && IsShownAt(top, left, window, screen);
}

std::string PlaceText(float place) { return PlainNumberText(place); }

void SlideIn(Form& window, std::string_view top, std::string_view left, const Platform& platform) {
  window.SetLeft(PlaceFromText(left));
  const int end = PlaceFromText(top);
  Slide(window, ScreenHeight(platform.screen), end, -kSlideStep, end, platform.events);
}

bool SlideOut(Form& window, const Platform& platform) {
  window.SetLeft(PlaceFromText(PlaceText(window.Left())));
  const int begin = PlaceFromText(PlaceText(window.Top()));
  return Slide(window, begin, ScreenHeight(platform.screen), kSlideStep, begin, platform.events);
}

void CentreOnScreen(Form& window, const Screen& screen) {
  const float height = window.Height() + (window.Bordered() ? kTitleBar : 0);
  window.SetLeft(std::max(0.0F, (screen.WidthTwips() - window.Width()) / 2));
  window.SetTop(std::max(0.0F, (screen.HeightTwips() - height) / 2));
}

void PlaceSetupFirst(Form& setup, const Screen& screen) {
  setup.SetTop(static_cast<float>(ScreenHeight(screen)) - setup.Height() - kFirstPlaceBottomGap);
  setup.SetLeft(static_cast<float>(ScreenWidth(screen)) - setup.Width() - kFirstPlaceSideGap);
}

void PlaceNavigatorFirst(Form& navigator, const Screen& screen) {
  navigator.SetTop(static_cast<float>(ScreenHeight(screen)) -
                   kNavigatorFirstHeights * navigator.Height() - kFirstPlaceBottomGap);
  navigator.SetLeft(kNavigatorFirstLeft);
}

}  // namespace velumar
