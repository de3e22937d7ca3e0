#pragma once

#include <QString>
#include <QStringList>
#include <optional>
#include <string>
#include <vector>

#include "app/theme/theme.h"

namespace velumar {

struct Options {
  QString settings_dir;  // empty: the user's own
  ThemeChoice theme = ThemeChoice::kSystem;
  // A run without a user: the number of bars (0: none), and the folder for pictures of the windows.
  int play = 0;
  QString screenshot_dir;
  std::optional<bool> chart_keys;  // drive any chart program by keys; unset: as the settings say
  std::vector<std::string> chart_arguments;  // added to the command line of the chart program

  bool PlaysAlone() const { return play > 0; }
};

// Throws std::invalid_argument with a sentence about a wrong argument. Answers --help and --version
// itself and ends the process. Needs the application object.
Options ReadOptions(const QStringList& arguments);

}  // namespace velumar
