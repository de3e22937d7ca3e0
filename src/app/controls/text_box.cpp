#include "app/controls/text_box.h"

#include <QtWidgets>
#include <algorithm>
#include <set>

#include "app/controls/control_view.h"

namespace velumar {

FittingLineEdit::FittingLineEdit(QWidget* parent) : QLineEdit(parent), full_font_(font()) {
  constexpr int kLineEditMargin = 2;  // the part of the margin that QLineEdit adds by itself
  setFrame(false);
  // In a box lower than the line, QLineEdit would put the text too low instead of in the middle.
  constexpr int kOutside = -2;
  setTextMargins(kMargin - kLineEditMargin, kOutside, kMargin - kLineEditMargin, kOutside);
  connect(this, &QLineEdit::textChanged, this, [this] { FitFont(); });
}

void FittingLineEdit::SetFullFont(const QFont& font) {
  full_font_ = font;
  FitFont();
}

void FittingLineEdit::SetShownText(const QString& wanted) {
  if (wanted != text()) {
    const int cursor = cursorPosition();
    setText(wanted);
    setCursorPosition(std::min(cursor, static_cast<int>(wanted.size())));
  }
  FitFont();  // also if the signal of the change is blocked
}

void FittingLineEdit::FitFont() {
  const FittedText fitted = FitText(text(), full_font_, TextRoom().size());
  const QFont& wanted = fitted.shortened ? full_font_ : fitted.font;
  if (font() != wanted) setFont(wanted);
}

void FittingLineEdit::paintEvent(QPaintEvent* event) {
  if (hasFocus() || !Overflows()) return QLineEdit::paintEvent(event);
  QStylePainter painter(this);
  QStyleOptionFrame panel;
  initStyleOption(&panel);
  painter.drawPrimitive(QStyle::PE_PanelLineEdit, panel);
  const QString ends = fontMetrics().elidedText(text(), Qt::ElideMiddle, TextRoom().width());
  painter.setPen(palette().color(QPalette::Text));
  painter.drawText(TextRoom(), Qt::AlignVCenter | Qt::AlignLeft | Qt::TextSingleLine, ends);
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
  explicit TextBoxView(const Parts& parts) : View(parts) {
    connect(this, &QLineEdit::textEdited, this, [this](const QString& text) {
      PassTypedText(text);
      setToolTip(ToolTipFor(ToQt(model_.ToolTip())));
    });
  }
  void Update() override {
    View::Update();
    ApplyFieldColours(*this, model_, Colours());
    SetFullFont(FitLine(DesignFont(), height()));
    SetShownText(ToQt(model_.Text()));
    setToolTip(ToolTipFor(ToQt(model_.ToolTip())));
  }

 protected:
  void keyPressEvent(QKeyEvent* event) override {
    pressed_.insert(event->key());
    View::keyPressEvent(event);
  }
  // A key pressed elsewhere, such as the Enter that closed a message box, isn't typed here.
  void keyReleaseEvent(QKeyEvent* event) override {
    View::keyReleaseEvent(event);
    if (event->isAutoRepeat() || pressed_.erase(event->key()) == 0) return;
    PassKeyUp(*event);
  }
  void focusOutEvent(QFocusEvent* event) override {
    View::focusOutEvent(event);
    pressed_.clear();
    if (!FocusReturns(event->reason())) Pass(&TextBox::UserLeave);
  }

 private:
  std::set<int> pressed_;  // keys that were pressed while the box had the focus
};

class NoteBoxView : public View<QPlainTextEdit, NoteBox> {
 public:
  explicit NoteBoxView(const Parts& parts) : View(parts) {
    setTabChangesFocus(true);
    setFrameShape(QFrame::StyledPanel);
    connect(this, &QPlainTextEdit::textChanged, this, [this] { PassTypedText(toPlainText()); });
  }
  void Update() override {
    View::Update();
    ApplyFieldColours(*this, model_, Colours());
    setFont(DesignFont());
    if (ToQt(model_.Text()) == toPlainText()) return;
    const QSignalBlocker quiet(this);
    setPlainText(ToQt(model_.Text()));
  }

 protected:
  void focusOutEvent(QFocusEvent* event) override {
    View::focusOutEvent(event);
    if (!FocusReturns(event->reason())) Pass(&NoteBox::UserLeave);
  }
};

}  // namespace

void AddTextBoxView(ViewMakers& makers) {
  makers[ControlKind::kTextBox] = MakeView<TextBoxView>;
  makers[ControlKind::kNoteBox] = MakeView<NoteBoxView>;
}

}  // namespace velumar
