#pragma once

#include <QDeadlineTimer>
#include <QWidget>
#include <map>

#include "app/controls/control_view.h"
#include "forms/desktop.h"

class QScrollArea;

namespace velumar {

// Shows any window from its control table, and passes mouse and keys to the model as events. One
// object for each time that the window is loaded.
class FormView : public QWidget {
 public:
  // Exceptions of handlers go to `report`. `look` may change; call ApplyLook afterwards.
  FormView(Form& form, const Appearance& look, ErrorReport report);

  // Shows the state of the window itself, without its controls.
  void Update();
  void UpdateControl(Control& control);
  void ApplyLook();
  // The window was unloaded: hides it, and deletes it once none of its handlers is running.
  void Retire() {
    hide();
    context_.Retire();
  }
  bool KeepsKeys() const { return form_.KeepsKeys(); }
  const FormContext& Context() const { return context_; }
  // Restores a minimised window and raises it.
  void ComeUp();
  // Moves with the mouse until its button is released.
  void StartDrag();

 protected:
  void paintEvent(QPaintEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void mousePressEvent(QMouseEvent*) override {
    context_.Deliver([this] { form_.UserPress(); });
  }
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent*) override {
    if (mouseGrabber() == this) releaseMouse();
  }
  void moveEvent(QMoveEvent* event) override;
  void closeEvent(QCloseEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override;
  void showEvent(QShowEvent* event) override;

 private:
  void OrderTabs();
  void MakeViews();
  QWidget& MakeScrolledContents();
  // Keeps a window with a border within the screen.
  void FitSize();
  void UpdatePlace();
  void UpdateShape();
  void FollowScreen();
  void UpdateVisible();
  void ReportPlace();

  Form& form_;
  FormContext context_;
  std::map<const Control*, ControlView*> views_;
  QWidget* menu_bar_ = nullptr;
  QScrollArea* scroll_ = nullptr;  // in a window with a border

  bool blended_ = true;      // the compositor draws soft corners
  QSize corners_;            // as drawn last
  QPoint wanted_;            // where the model puts the window
  QDeadlineTimer settling_;  // until then a move may be an echo of our own
  bool dragging_ = false;
  bool following_ = false;
  QPoint grip_;  // from the corner to the mouse, in a drag that the window system leaves to us
};

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
  void SetTheme(const Palette& palette);

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
