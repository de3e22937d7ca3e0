#include "app/windows/desktop_view.h"

#include <utility>

namespace velumar {

DesktopView::DesktopView(Desktop& desktop, Appearance look, ErrorReport report)
    : desktop_(desktop), look_(std::move(look)), report_(std::move(report)) {
  desktop_.SetListener(this);
}

DesktopView::~DesktopView() {
  desktop_.SetListener(nullptr);
  for (const auto& [form, view] : views_) delete view;
}

FormView* DesktopView::Find(const Form& form) const {
  const auto found = views_.find(&form);
  return found == views_.end() ? nullptr : found->second;
}

void DesktopView::SetTheme(const Theme& theme) {
  look_.theme = theme;
  for (const auto& [form, view] : views_) view->ApplyLook();
}

void DesktopView::Raise() {
  for (const auto& [form, view] : views_) {
    if (form->Visible()) view->ComeUp();
  }
}

void DesktopView::FormLoaded(Form& form) { views_[&form] = new FormView(form, look_, report_); }

void DesktopView::FormUnloaded(Form& form) {
  if (FormView* view = Find(form)) {
    views_.erase(&form);
    view->Retire();
  }
}

void DesktopView::FormChanged(Form& form) {
  if (FormView* view = Find(form)) view->Update();
}

void DesktopView::ControlChanged(Form& form, Control& control) {
  if (FormView* view = Find(form)) view->UpdateControl(control);
}

void DesktopView::FormRaised(Form& form) {
  FormView* view = Find(form);
  if (view == nullptr) return;
  view->ComeUp();
  view->activateWindow();
}

void DesktopView::DragStarted(Form& form) {
  if (FormView* view = Find(form)) view->StartDrag();
}

}  // namespace velumar
