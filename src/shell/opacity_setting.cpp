#include "shell/opacity_setting.h"

#include <optional>
#include <string>

#include "base/number_text.h"
#include "shell/window_shaping.h"

namespace velumar {

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

}  // namespace velumar
