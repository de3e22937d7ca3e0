#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "forms/form.h"
#include "platform/platform.h"

namespace velumar {

// Shape, opacity, place and slides of the windows. Places are twips: saved as number texts, used as
// 16-bit numbers.

// Keeps a small window on top and rounds its corners.
void ShapeSmallWindow(Form& window);
// Sets window and slider to the opacity saved under the key. A text that is not in the slider's
// range counts as 250.
void LoadOpacity(Form& window, Slider& slider, const SettingsStore& settings, std::string_view key);

// Size of the screen, at most 32,767 twips.
std::int16_t ScreenWidth(const Screen& screen);
std::int16_t ScreenHeight(const Screen& screen);

// Returns true if a screen shows the window at a saved place. A place beyond 16 bits is first
// replaced by the largest that shows all of the window.
bool IsShownAt(std::string& top, std::string& left, const Form& window, const Screen& screen);
// The same; a top of "0" means that no place is saved.
bool CanRestorePlace(std::string& top, std::string& left, const Form& window, const Screen& screen);

// A saved place, limited to 16 bits. Throws std::invalid_argument for a text that is not a number.
std::int16_t PlaceFromText(std::string_view text);
std::string PlaceText(float place);

// Slides the window over the bottom edge of the screen, in to a saved place or out from its own,
// within a sixth of a second. It comes to rest a multiple of 50 twips from where it began. Clicks
// run during the slide; a newer slide or an unload of the window ends this one. Neither shows nor
// hides it. SlideIn throws std::invalid_argument for a text that is not a number; SlideOut returns
// false if the slide was ended early.
void SlideIn(Form& window, std::string_view top, std::string_view left, const Platform& platform);
bool SlideOut(Form& window, const Platform& platform);

// Centres the window, including its title bar, but never with its top left corner off the screen.
void CentreOnScreen(Form& window, const Screen& screen);

// For windows without a saved place: the lower right and the lower left corner of the screen.
void PlaceSetupFirst(Form& setup, const Screen& screen);
void PlaceNavigatorFirst(Form& navigator, const Screen& screen);

}  // namespace velumar
