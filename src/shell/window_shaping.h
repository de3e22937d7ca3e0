#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "forms/form.h"
#include "platform/event_loop.h"
#include "platform/services.h"

namespace velumar {

// Shape, opacity, place and slides of the small windows. Places are twips: saved as number texts,
// used as 16-bit numbers.

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
// Call it when a mouse button is pressed on an area by which the window can be dragged.
void DragWindow(Form& window);
// A pressed picture moves by a pixel.
void PressImage(Control& image);
void ReleaseImage(Control& image);

// Size of the screen, at most 32,767 twips.
std::int16_t ScreenWidth(const Screen& screen);
std::int16_t ScreenHeight(const Screen& screen);

// Returns true if a screen shows the window at a saved place. A place beyond 16 bits is first
// replaced by the largest that shows all of the window.
bool CanRestorePlace(std::string& top, std::string& left, const Form& window, const Screen& screen);

// A saved place, limited to 16 bits. Throws std::invalid_argument for a text that is not a number.
std::int16_t PlaceFromText(std::string_view text);
std::string PlaceText(float place);

// Slides the window in or out over the bottom edge of the screen within a sixth of a second. It
// comes to rest a multiple of 50 twips from the edge. Clicks run during the slide; a newer slide or
// an unload of the window ends this one. Neither shows nor hides it. Throws std::invalid_argument
// for a text that is not a number.
void SlideIn(Form& window, std::string_view top, std::string_view left, EventLoop& events,
             const Screen& screen);
// Returns false if the slide was ended early.
bool SlideOut(Form& window, std::string_view top, std::string_view left, EventLoop& events,
              const Screen& screen);

// Centres the window, including its title bar, but never with its top left corner off the screen.
void CentreOnScreen(Form& window, const Screen& screen);

// For windows without a saved place: the lower right and the lower left corner of the screen.
void PlaceSetupFirst(Form& setup, const Screen& screen);
void PlaceNavigatorFirst(Form& navigator, const Screen& screen);

}  // namespace velumar
