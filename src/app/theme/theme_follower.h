#pragma once

#include <QObject>
#include <QPalette>
#include <functional>
#include <utility>

#include "app/theme/theme.h"

namespace velumar {

enum class ThemeChoice { kSystem, kLight, kDark };

// The palette of the desktop. Removes ours from the application, which hides it; the next
// ApplyTheme sets it again.
QPalette DesktopPalette();

// The theme that was chosen, or for "system" the one that matches the desktop's palette. Create it
// before the first ApplyTheme.
class ThemeFollower : public QObject {
 public:
  explicit ThemeFollower(ThemeChoice choice,
                         std::function<QPalette()> desktop_palette = DesktopPalette);

  const Palette& Current() const { return current_; }
  // Called with the new theme, after it was applied, whenever the desktop turns dark or light.
  void OnChange(std::function<void(const Palette& palette)> change) { change_ = std::move(change); }

  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void Follow();

  std::function<QPalette()> desktop_palette_;
  Palette current_;
  std::function<void(const Palette& palette)> change_;
  bool following_ = false;
};

}  // namespace velumar
