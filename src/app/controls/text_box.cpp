#include "app/controls/text_box.h"

#include <QApplication>
#include <QKeyEvent>
#include <QStyleOptionFrame>
#include <QStylePainter>
#include <algorithm>
#include <set>

#include "app/controls/control_view.h"
#include "app/controls/key_codes.h"
#include "app/theme/fonts.h"

namespace velumar {

namespace {

constexpr int kMargin = 3;          // between the edge of the line and its text
constexpr int kLineEditMargin = 2;  // the part of it that QLineEdit adds by itself

}  // namespace

FittingLineEdit::FittingLineEdit(QWidget* parent) : QLineEdit(parent), full_font_(font()) {
  setFrame(false);
  setTextMargins(kMargin - kLineEditMargin, 0, kMargin - kLineEditMargin, 0);
  connect(this, &QLineEdit::textChanged, this, [this] { FitFont(); });
}

void FittingLineEdit::SetFullFont(const QFont& font) {
  full_font_ = font;
  FitFont();
}

void FittingLineEdit::SetShownText(const QString& wanted) {
  if (wanted == text()) return;
  const int cursor = cursorPosition();
  setText(wanted);
  FitFont();
  setCursorPosition(std::min(cursor, static_cast<int>(wanted.size())));
}

QRect FittingLineEdit::TextRoom() const { return rect().adjusted(kMargin, 0, -kMargin, 0); }

void FittingLineEdit::FitFont() {
  const FittedText fitted = FitText(text(), full_font_, TextRoom().size());
  const QFont& wanted = fitted.shortened ? full_font_ : fitted.font;
  if (font() != wanted) setFont(wanted);
}

bool FittingLineEdit::Overflows() const {
  return fontMetrics().horizontalAdvance(text()) > TextRoom().width();
}

QString FittingLineEdit::ToolTipFor(const QString& tip) const {
  return Overflows() ? tip + QLatin1Char('\n') + text() : tip;
}

void FittingLineEdit::paintEvent(QPaintEvent* event) {
  if (hasFocus() || !Overflows()) {
    QLineEdit::paintEvent(event);
    return;
  }
  QStylePainter painter(this);
  QStyleOptionFrame panel;
  initStyleOption(&panel);
  painter.drawPrimitive(QStyle::PE_PanelLineEdit, panel);
  const QString ends = fontMetrics().elidedText(text(), Qt::ElideMiddle, TextRoom().width());
  painter.setPen(palette().color(QPalette::Text));
  painter.drawText(TextRoom(), Qt::AlignVCenter | Qt::AlignLeft | Qt::TextSingleLine, ends);
}

void FittingLineEdit::focusInEvent(QFocusEvent* event) {
  QLineEdit::focusInEvent(event);
  update();
}

void FittingLineEdit::focusOutEvent(QFocusEvent* event) {
  QLineEdit::focusOutEvent(event);
  update();
}

void FittingLineEdit::resizeEvent(QResizeEvent* event) {
  QLineEdit::resizeEvent(event);
  FitFont();
}

namespace {

// True if the focus returns by itself: after a menu of the box, or after a refresh of the chart,
// for which another program is in front for a moment.
bool FocusReturns(Qt::FocusReason reason) {
  return reason == Qt::PopupFocusReason ||
         (reason == Qt::ActiveWindowFocusReason && QApplication::activeWindow() == nullptr);
}

class TextBoxView : public View<FittingLineEdit, TextBox> {
 public:
  TextBoxView(FormContext& context, QWidget& parent, TextBox& box) : View(context, parent, box) {
    connect(this, &QLineEdit::textEdited, this, [this](const QString& text) {
      context_.Deliver([this, &text] {
        if (model_.Reachable()) model_.SetText(text.toStdString());
      });
      setToolTip(ToolTipFor(ToQString(model_.ToolTip())));
    });
  }
  void Update() override {
    View::Update();
    ApplyFieldColours(*this, model_, Colours());
    SetFullFont(FitLine(DesignFont(), height()));
    SetShownText(ToQString(model_.Text()));
    setToolTip(ToolTipFor(ToQString(model_.ToolTip())));
  }

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void keyReleaseEvent(QKeyEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;

 private:
  std::set<int> pressed_;  // keys that were pressed while the box had the focus
};

void TextBoxView::keyPressEvent(QKeyEvent* event) {
  pressed_.insert(event->key());
  View::keyPressEvent(event);
}

// A key pressed elsewhere, such as the Enter that closed a message box, isn't typed here.
void TextBoxView::keyReleaseEvent(QKeyEvent* event) {
  View::keyReleaseEvent(event);
  if (event->isAutoRepeat() || pressed_.erase(event->key()) == 0) return;
  const int code = VirtualKeyCode(*event);
  context_.Deliver([this, code] { model_.UserKeyUp(code); });
}

void TextBoxView::focusOutEvent(QFocusEvent* event) {
  View::focusOutEvent(event);
  pressed_.clear();
  if (FocusReturns(event->reason())) return;
  context_.Deliver([this] { model_.UserLeave(); });
}

}  // namespace

void AddTextBoxView(ViewMakers& makers) { makers[ControlKind::kTextBox] = MakeView<TextBoxView>; }

}  // namespace velumar
