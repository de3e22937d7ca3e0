#pragma once

#include <QObject>
#include <QPalette>
#include <functional>
#include <utility>

#include "app/theme/theme.h"

namespace velumar {

enum class ThemeChoice { kSystem, kLight, kDark };

// Gives the whole application the colours of a theme: boxes, dialogs, tooltips and the icon.
void ApplyTheme(const Theme& theme);

// The palette of the desktop. Removes ours from the application, which hides it; the next
// ApplyTheme sets it again.
QPalette DesktopPalette();

// The theme that was chosen, or for "system" the one that matches the desktop's palette. To be
// created before the first ApplyTheme.
class ThemeFollower : public QObject {
 public:
  explicit ThemeFollower(ThemeChoice choice,
                         std::function<QPalette()> desktop_palette = DesktopPalette);

  const Theme& Current() const { return current_; }
  // Called with the new theme, after it was applied, whenever the desktop turns dark or light.
  void OnChange(std::function<void(const Theme& theme)> change) { change_ = std::move(change); }

  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void Follow();

  std::function<QPalette()> desktop_palette_;
  Theme current_;
  std::function<void(const Theme& theme)> change_;
  bool following_ = false;
};

}  // namespace velumar
