#pragma once

#include <QApplication>
#include <string>

namespace velumar {

// What drawing into files needs of the toolkit: nobody has to have a display for it. The process
// keeps it until it ends: a second one after the first is more than the toolkit bears everywhere.
inline void StartDrawingOffscreen() {
  struct Application {
    bool platform = qputenv("QT_QPA_PLATFORM", "offscreen");
    int count = 1;
    std::string name = "velumar-cli";
    char* names[2] = {name.data(), nullptr};
    QApplication application{count, names};
  };
  static const auto* const kept = new Application;
  static_cast<void>(kept);
}

}  // namespace velumar
