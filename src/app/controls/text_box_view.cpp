#include "app/controls/text_box_view.h"

#include <QApplication>
#include <QKeyEvent>

#include "app/controls/key_codes.h"
#include "app/theme/text_fit.h"

namespace velumar {

namespace {

// A menu of the box, or another program in front for a moment, as at each refresh of the chart:
// whoever was typing goes on afterwards.
bool ComesBack(Qt::FocusReason reason) {
  return reason == Qt::PopupFocusReason ||
         (reason == Qt::ActiveWindowFocusReason && QApplication::activeWindow() == nullptr);
}

}  // namespace

TextBoxView::TextBoxView(FormCanvas& canvas, QWidget& window, TextBox& box)
    : FittingLineEdit(&window), canvas_(canvas), box_(box) {
  connect(this, &QLineEdit::textEdited, this, [this](const QString& text) {
    canvas_.Deliver([this, &text] {
      if (box_.Reachable()) box_.SetText(text.toStdString());
    });
    setToolTip(ToolTipFor(ToQString(box_.ToolTip())));
  });
}

void TextBoxView::Update() {
  ApplyCommon(*this, box_);
  ApplyFieldColours(*this, box_, canvas_.Look().theme);
  SetFullFont(FitLine(canvas_.Look().faces.For(box_.DesignLook()), height()));
  SetShownText(ToQString(box_.Text()));
  setToolTip(ToolTipFor(ToQString(box_.ToolTip())));
}

void TextBoxView::keyPressEvent(QKeyEvent* event) {
  pressed_.insert(event->key());
  FittingLineEdit::keyPressEvent(event);
}

// A key that went down elsewhere, as the Enter that closed a message box, isn't typed here.
void TextBoxView::keyReleaseEvent(QKeyEvent* event) {
  FittingLineEdit::keyReleaseEvent(event);
  if (event->isAutoRepeat() || pressed_.erase(event->key()) == 0) return;
  const int code = VirtualKeyCode(*event);
  canvas_.Deliver([this, code] { box_.UserKeyUp(code); });
}

void TextBoxView::focusOutEvent(QFocusEvent* event) {
  FittingLineEdit::focusOutEvent(event);
  pressed_.clear();
  if (ComesBack(event->reason())) return;
  canvas_.Deliver([this] { box_.UserLeave(); });
}

}  // namespace velumar
