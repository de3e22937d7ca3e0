#pragma once

#include <QSettings>
#include <nlohmann/json.hpp>

#include "charthost/series_source.h"
#include "charthost/view/chart_settings.h"
#include "charthost/view/key_filter.h"
#include "charthost/view/main_window.h"
#include "charthost/view/theme.h"
#include "support/matchers.h"
#include "support/scratch.h"

namespace velumar {

// The chart settings of this process are in files in the folder on every system, not the user's
// own.
inline void KeepSettingsIn(const std::string& folder) {
  QSettings::setDefaultFormat(QSettings::IniFormat);
  QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, QString::fromStdString(folder));
}

// The main window as the program builds it, on a folder with SCB (daily, and 5 minutes), ADVANC and
// "S P-X" (daily).
class ChartProgram {
 public:
  ChartProgram() {
    InstallStyle();
    KeepSettingsIn(scratch.Sub("settings"));
    std::filesystem::create_directory(scratch.Sub("my data 50%"));
    std::vector<Bar> rising_and_falling = DailyBars(300);
    for (std::size_t i = 0; i < rising_and_falling.size(); i += 2) {
      std::swap(rising_and_falling[i].open, rising_and_falling[i].close);
    }
    StoreSecurity(folder, {"SCB", "Bank", -1}, rising_and_falling, cache);
    StoreSecurity(folder, {"SCB", "Bank", 5}, IntradayBars(60, 5), cache);
    StoreSecurity(folder, {"ADVANC", "Advanced Info", -1}, DailyBars(40), cache);
    StoreSecurity(folder, {"S P-X", "Index", -1}, DailyBars(100), cache);
    settings.emplace();
    window.emplace(source, *settings, scratch / "drawings.json", [this](const std::string& line) {
      events.push_back(nlohmann::json::parse(line));
    });
    filter.emplace(*window);
    window->show();
  }

  nlohmann::json Last() const { return events.empty() ? nlohmann::json() : events.back(); }

  ScratchFolder scratch;
  std::string folder = scratch.Sub("my data 50%");
  IndexCache cache;
  SeriesSource source{cache};
  std::optional<ChartSettings> settings;
  std::vector<nlohmann::json> events;
  std::optional<MainWindow> window;
  std::optional<KeyFilter> filter;
};

}  // namespace velumar
