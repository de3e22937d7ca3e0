#pragma once

#include <QString>
#include <QStringList>
#include <string>
#include <vector>

namespace velumar {

enum class ThemeChoice { kSystem, kLight, kDark };

struct Options {
  QString settings_dir;  // empty: the user's own
  ThemeChoice theme = ThemeChoice::kSystem;
  // A run that nobody watches: so many bars, pictures of the windows into the folder, the end.
  QString screenshot_dir;
  int play = 0;
  // Handed on to the chart program behind the arguments of its start.
  std::vector<std::string> chart_arguments;

  bool PlaysAlone() const { return play > 0; }
};

// Throws std::invalid_argument with a sentence about an argument that isn't one. Answers --help and
// --version itself and ends the process. Needs the application object.
Options ReadOptions(const QStringList& arguments);

}  // namespace velumar
