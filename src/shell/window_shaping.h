#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "forms/form.h"
#include "platform/event_loop.h"
#include "platform/services.h"

namespace velumar {

// The look and the movement that the small windows share. Places are twips; where they are kept,
// they are number texts, and where they are used they pass through 16 bits.

// The corner ellipse of all small windows, in pixels.
inline constexpr std::int16_t kCornerWidth = 15;
inline constexpr std::int16_t kCornerHeight = 12;

void RoundWindow(Form& window, std::int16_t corner_width, std::int16_t corner_height);
// 0 (invisible) to 255 (solid); any other value changes nothing.
void SetWindowAlpha(Form& window, std::int16_t alpha);
// The opacity of a window is the value of its slider and is saved under a key. A saved text that is
// not in the slider's range counts as 250.
void LoadOpacity(Form& window, Slider& slider, const SettingsStore& settings, std::string_view key);
void ApplyOpacity(Form& window, const Slider& slider);
void SaveOpacity(const Form& window, SettingsStore& settings, std::string_view key);
// To be called on a mouse press on a drag surface, whatever the button.
void DragWindow(Form& window);
// A pressed picture sinks by a pixel.
void PressImage(Control& image);
void ReleaseImage(Control& image);

// A screen measure as the sums use it: one above 32,767 twips counts as 32,767.
std::int16_t ScreenWidth(const Screen& screen);
std::int16_t ScreenHeight(const Screen& screen);

// Whether the two texts of a kept place are a place of the window that a screen shows. A place
// beyond what 16 bits hold is first brought to the largest that shows the window whole.
bool KnowsPlace(std::string& top, std::string& left, const Form& window, const Screen& screen);

// A kept place as 16-bit twips; one beyond them counts as the outermost that they hold. Throws
// std::invalid_argument for a text that is no number.
std::int16_t PlaceFromText(std::string_view text);
std::string PlaceText(float place);

// The window comes up from, or goes down through, the bottom edge of the screen in steps of 50
// twips, 10 ms each; clicks run meanwhile, and a newer slide or an unload of the window ends this
// one. Neither shows nor hides it. A text that is no number throws std::invalid_argument.
void SlideIn(Form& window, std::string_view top, std::string_view left, EventLoop& events,
             const Screen& screen);
// False when it didn't come to its end.
bool SlideOut(Form& window, std::string_view top, std::string_view left, EventLoop& events,
              const Screen& screen);

// In the middle of the screen, with the title bar of a window that has one; never so high or so far
// left that its corner is off the screen.
void CentreOnScreen(Form& window, const Screen& screen);

// The lower right and the lower left corner of the screen, for windows without a known place.
void PlaceSetupFirst(Form& setup, const Screen& screen);
void PlaceNavigatorFirst(Form& navigator, const Screen& screen);

}  // namespace velumar
