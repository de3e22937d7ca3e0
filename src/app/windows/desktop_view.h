#pragma once

#include <map>

#include "app/windows/form_view.h"
#include "forms/desktop.h"

namespace velumar {

// Shows the windows of a desktop on the screen for as long as it lives.
class DesktopView : public FormListener {
 public:
  // `report` shows what a handler of an event throws.
  DesktopView(Desktop& desktop, Appearance look, ErrorReport report);
  ~DesktopView() override;
  DesktopView(const DesktopView&) = delete;
  DesktopView& operator=(const DesktopView&) = delete;

  // Null while the window is unloaded.
  FormView* Find(const Form& form) const;

  // Draws all windows, those to come too, in these colours.
  void SetTheme(const Theme& theme);

  // Brings all shown windows above those of other programs, icons too.
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
