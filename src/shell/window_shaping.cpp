#include "shell/window_shaping.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <optional>
#include <stdexcept>

#include "base/number_text.h"
#include "platform/event_loop.h"

namespace velumar {

namespace {

constexpr int kSlideStep = 50;   // twips
constexpr int kSlidePause = 10;  // ms
constexpr int kMaxSlideSteps = 15;
constexpr float kPressDepth = 15;  // twips: a pixel
constexpr float kTitleBar = 360;   // twips of a title bar
constexpr float kFirstPlaceBottomGap = 500;
constexpr float kFirstPlaceSideGap = 50;
constexpr float kNavigatorFirstLeft = 100;
constexpr float kNavigatorFirstHeights = 2.5F;

std::int16_t Measure(float twips) {
  return static_cast<std::int16_t>(std::nearbyint(std::clamp(twips, 0.0F, 32767.0F)));
}

}  // namespace

void RoundWindow(Form& window, std::int16_t corner_width, std::int16_t corner_height) {
  window.SetCorners(corner_width, corner_height);
}

void SetWindowAlpha(Form& window, std::int16_t alpha) {
  constexpr std::int16_t kSolid = 255;
  if (alpha >= 0 && alpha <= kSolid) window.SetOpacity(alpha);
}

void LoadOpacity(Form& window, Slider& slider, const SettingsStore& settings,
                 std::string_view key) {
  constexpr std::int16_t kDefault = 250;
  const std::optional<std::int16_t> kept = ToInt16(settings.Read(key).value_or(""));
  const bool usable = kept && *kept >= slider.Limits().low && *kept <= slider.Limits().high;
  const std::int16_t opacity = usable ? *kept : kDefault;
  SetWindowAlpha(window, opacity);
  slider.SetValue(opacity);
}

void ApplyOpacity(Form& window, const Slider& slider) {
  SetWindowAlpha(window, static_cast<std::int16_t>(slider.Value()));
}

void SaveOpacity(const Form& window, SettingsStore& settings, std::string_view key) {
  settings.Save(key, std::to_string(window.Opacity()));
}

void DragWindow(Form& window) { window.StartDrag(); }

void PressImage(Control& image) {
  image.SetPlace(image.Left() + kPressDepth, image.Top() + kPressDepth);
}

void ReleaseImage(Control& image) {
  image.SetPlace(image.Left() - kPressDepth, image.Top() - kPressDepth);
}

std::int16_t ScreenWidth(const Screen& screen) { return Measure(screen.WidthTwips()); }

std::int16_t ScreenHeight(const Screen& screen) { return Measure(screen.HeightTwips()); }

std::int16_t PlaceFromText(std::string_view text) {
  if (const std::optional<std::int16_t> place = ToInt16(text)) return *place;
  const std::optional<double> far = ToDouble(text);
  if (!far) throw std::invalid_argument("\"" + std::string(text) + "\" is not a window position");
  return *far < 0 ? INT16_MIN : INT16_MAX;
}

namespace {

// Throws std::invalid_argument for a text that is not a number.
void LimitPlace(std::string& place, float size, std::int16_t measure) {
  const std::optional<double> wanted = ToDouble(place);
  if (!wanted) throw std::invalid_argument("not a window position");
  if (*wanted > INT16_MAX) place = PlaceText(static_cast<float>(measure) - size);
}

// The places from one top to another, a multiple of kSlideStep apart. The last one is not beyond
// `end`; there is none if `end` is in the wrong direction.
std::vector<int> SlideTops(int begin, int end, int direction) {
  std::vector<int> tops;
  const int steps = (end - begin) * direction / kSlideStep;
  if ((end - begin) * direction < 0) return tops;
  const int stride = std::max((steps + kMaxSlideSteps - 1) / kMaxSlideSteps, 1);
  for (int step = 0; step < steps; step += stride) {
    tops.push_back(begin + step * kSlideStep * direction);
  }
  tops.push_back(begin + steps * kSlideStep * direction);
  return tops;
}

void SlideThrough(Form& window, int slide, EventLoop& events, const std::vector<int>& tops) {
  clsWaitableTimer timer(events);
  for (const int top : tops) {
    if (!window.Slides(slide)) return;
    window.SetTop(static_cast<float>(top));
    timer.Wait(kSlidePause);
  }
}

}  // namespace

bool CanRestorePlace(std::string& top, std::string& left, const Form& window,
                     const Screen& screen) {
  if (top == "0") return false;
  try {
    LimitPlace(top, window.Height(), ScreenHeight(screen));
    LimitPlace(left, window.Width(), ScreenWidth(screen));
    return screen.Shows(PlaceFromText(left), PlaceFromText(top), window.Width(), window.Height());
  } catch (const std::invalid_argument&) {
    return false;
  }
}

std::string PlaceText(float place) { return PlainNumberText(place); }

void SlideIn(Form& window, std::string_view top, std::string_view left, EventLoop& events,
             const Screen& screen) {
  window.SetLeft(PlaceFromText(left));
  const int end = PlaceFromText(top);
  const int slide = window.BeginSlide(static_cast<float>(end));
  const int begin = ScreenHeight(screen);
  SlideThrough(window, slide, events, SlideTops(begin, end, -1));
  window.EndSlide(slide);
}

bool SlideOut(Form& window, std::string_view top, std::string_view left, EventLoop& events,
              const Screen& screen) {
  window.SetLeft(PlaceFromText(left));
  const int end = ScreenHeight(screen);
  const int begin = PlaceFromText(top);
  const int slide = window.BeginSlide(static_cast<float>(begin));
  SlideThrough(window, slide, events, SlideTops(begin, end, 1));
  window.EndSlide(slide);
  return window.Slides(slide);
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
