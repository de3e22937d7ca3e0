#pragma once

#include <map>

#include "app/windows/form_view.h"
#include "forms/desktop.h"

namespace velumar {

// Shows the windows of a desktop on the screen.
class DesktopView : public FormListener {
 public:
  // Exceptions of handlers go to `report`.
  DesktopView(Desktop& desktop, Appearance look, ErrorReport report);
  ~DesktopView() override;
  DesktopView(const DesktopView&) = delete;
  DesktopView& operator=(const DesktopView&) = delete;

  // Null if the window is not loaded.
  FormView* Find(const Form& form) const;

  // For all windows, also those that are loaded later.
  void SetTheme(const Theme& theme);

  // Raises all shown windows above those of other programs, and restores minimised ones.
  void Raise();

  void FormLoaded(Form& form) override;
  void FormUnloaded(Form& form) override;
  void FormChanged(Form& form) override;
  void ControlChanged(Form& form, Control& control) override;
  void FormRaised(Form& form) override;
  void DragStarted(Form& form) override;

 private:
  Desktop& desktop_;
  Appearance look_;
  ErrorReport report_;
  std::map<const Form*, FormView*> views_;
};

}  // namespace velumar
