#pragma once

#include <QDeadlineTimer>
#include <QWidget>
#include <functional>
#include <map>
#include <string>

#include "app/controls/control_view.h"
#include "app/controls/form_canvas.h"
#include "forms/form.h"

class QScrollArea;

namespace velumar {

using ErrorReport = std::function<void(const std::string& text)>;

// Draws any window from its control table and turns the user's hand into the model's events. One
// object per load of the window.
class FormView : public QWidget, public FormCanvas {
 public:
  // What a handler throws goes to `report`.
  FormView(Form& form, const Appearance& look, ErrorReport report);

  // Takes over everything that the model holds of the window itself.
  void Update();
  void UpdateControl(Control& control);
  // The appearance has changed under the window.
  void Redress();
  // The window was unloaded: it vanishes now and dies once no handler of it is on the stack.
  void Retire();
  bool KeepsKeys() const { return form_.KeepsKeys(); }
  // Restores a minimised window and raises it.
  void ComeUp();
  // Moves with the mouse until its button is released.
  void StartDrag();

  const Appearance& Look() const override { return look_; }
  void Deliver(const std::function<void()>& event) override;
  QColor GroundUnder(const QRect& place) const override;
  QPainterPath Outline() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void moveEvent(QMoveEvent* event) override;
  void closeEvent(QCloseEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override;
  void showEvent(QShowEvent* event) override;

 private:
  void OrderTabs();
  void MakeViews();
  QWidget& MakeScrolledInside();
  // A window with a border is no larger than the screen.
  void FitSize();
  void UpdateFlags();
  void UpdatePlace();
  void UpdateShape();
  void FollowScreen();
  void UpdateVisible();
  void FollowTheUser();

  Form& form_;
  const Appearance& look_;
  ErrorReport report_;
  std::map<const Control*, ControlView*> views_;
  QWidget* menu_bar_ = nullptr;
  QScrollArea* scroll_ = nullptr;  // in a window with a border
  int handlers_on_stack_ = 0;
  bool retired_ = false;

  bool blended_ = true;      // soft corners show
  QSize corners_;            // as last drawn
  QPoint wanted_;            // where the model wants the window
  QDeadlineTimer settling_;  // until then a move may be an echo of our own
  bool dragging_ = false;
  bool following_ = false;
  QPoint grip_;  // of a drag that the window system leaves to us: from the corner to the mouse
};

}  // namespace velumar
