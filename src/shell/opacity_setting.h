#pragma once

#include <string_view>

#include "forms/form.h"
#include "platform/services.h"

namespace velumar {

// The opacity of a window with a slider: its value is the window's, and it is kept under a key.

// Reads the key, applies it and puts the slider there. A text that is no opacity of the slider's
// range counts as the default, 250.
void LoadOpacity(Form& window, Slider& slider, const SettingsStore& settings, std::string_view key);
// The slider was moved.
void ApplyOpacity(Form& window, const Slider& slider);
void SaveOpacity(const Form& window, SettingsStore& settings, std::string_view key);

}  // namespace velumar
