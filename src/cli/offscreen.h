#pragma once

#include <QApplication>
#include <string>

namespace velumar {

// What drawing into files needs of the toolkit: nobody has to have a display for it.
class OffscreenApplication {
 public:
  OffscreenApplication() = default;

 private:
  bool platform_ = qputenv("QT_QPA_PLATFORM", "offscreen");
  int count_ = 1;
  std::string name_ = "velumar-cli";
  char* names_[2] = {name_.data(), nullptr};
  QApplication application_{count_, names_};
};

}  // namespace velumar
