#include "app/controls/label_view.h"

#include <QtWidgets>
#include <algorithm>
#include <cmath>
#include <limits>

#include "forms/form.h"

namespace velumar {

namespace {

constexpr double kDisplayBase = 5;  // from the baseline of display type to the edge of its label

bool IsDisplay(const Control& label) { return label.DesignLook().face == FontFace::kImpact; }

// True for a text on the artwork that names the control next to it.
bool IsCaption(const Control& control) {
  return control.Kind() == ControlKind::kLabel && !IsDisplay(control) &&
         control.DesignLook().backdrop == Backdrop::kNone;
}

bool SpansWindow(const Control& label) {
  return label.Width() >= 0.9F * label.Owner().Width() &&
         label.Height() >= 0.6F * label.Owner().Height();
}

bool TakesInput(const Control& control) {
  return control.Kind() != ControlKind::kLabel && control.Kind() != ControlKind::kPicture &&
         control.Kind() != ControlKind::kFrame && control.Kind() != ControlKind::kListBox;
}

// True if two places share at least half the height of the smaller one.
bool AreLevel(const QRect& a, const QRect& b) {
  const int shared = std::min(a.bottom(), b.bottom()) - std::max(a.top(), b.top()) + 1;
  return 2 * shared >= std::min(a.height(), b.height());
}

// The nearest box or button at the same height.
const Control* Neighbour(const Control& label) {
  const QRect place = LogicalPlace(label);
  const Control* nearest = nullptr;
  int nearest_gap = std::numeric_limits<int>::max();
  for (const Control* control : label.Owner().Controls()) {
    const QRect other = LogicalPlace(*control);
    if (control->Container() != label.Container()) continue;
    if (!TakesInput(*control) || !AreLevel(place, other)) continue;
    const int gap = std::max({other.left() - place.right(), place.left() - other.right(), 0});
    if (gap < nearest_gap) {
      nearest = control;
      nearest_gap = gap;
    }
  }
  return nearest;
}

double MiddleOf(const QRect& place) { return place.top() + place.height() / 2.0; }

double WantedBaseline(const Control& label, const QFont& font) {
  const QRect place = LogicalPlace(label);
  const double half_capital = QFontMetricsF(font).capHeight() / 2;
  if (SpansWindow(label)) return LogicalPixels(label.Owner().Height()) / 2.0 + half_capital;
  if (IsDisplay(label)) return place.top() + place.height() - kDisplayBase;
  const Control* neighbour = IsCaption(label) ? Neighbour(label) : nullptr;
  return MiddleOf(neighbour == nullptr ? place : LogicalPlace(*neighbour)) + half_capital;
}

// Logical pixels between the edge of a label and its text.
int TextMargin(const Control& label) {
  if (label.DesignLook().backdrop != Backdrop::kNone) return 5;
  return SpansWindow(label) ? 12 : 0;
}

// The largest font size, in pixels, at which all captions of that look in the window fit into their
// places, so that they look alike.
int CaptionPixels(const Form& form, const Look& look, const Typefaces& faces) {
  QFont font = faces.For(look);
  for (const Control* control : form.Controls()) {
    const Look& other = control->DesignLook();
    if (!IsCaption(*control) || other.face != look.face || other.points != look.points) continue;
    const QFont fitted =
        FitText(ToQt(control->Text()), faces.For(other), LogicalPlace(*control).size()).font;
    font.setPixelSize(std::min(font.pixelSize(), fitted.pixelSize()));
  }
  return font.pixelSize();
}

}  // namespace

double Baseline(const Control& label, const QFont& font, const QString& text) {
  const QRect place = LogicalPlace(label);
  const QRectF ink = QFontMetricsF(font).tightBoundingRect(text);
  const double highest = place.top() - ink.top();
  const double lowest = place.top() + place.height() - ink.bottom();
  const double wanted = std::round(WantedBaseline(label, font));
  return lowest < highest ? highest : std::clamp(wanted, highest, lowest);
}

void LabelView::Update() {
  View::Update();
  const QString text = ToQt(model_.Text());
  if (text != this->text()) setText(text);  // for screen readers
  QFont font = DesignFont();
  if (IsCaption(model_)) {
    font.setPixelSize(CaptionPixels(model_.Owner(), model_.DesignLook(), context_.Look().faces));
  }
  const QSizeF room(width() - 2 * TextMargin(model_), height());
  const bool status = model_.DesignLook().backdrop == Backdrop::kWhitePaper;
  fitted_ = status ? FitStatus(text, font, room) : FitText(text, font, room);
  if (fitted_.shortened) setToolTip(ToQt(model_.ToolTip()) + QLatin1Char('\n') + text);
}

QColor LabelView::Background() const {
  const Backdrop backdrop = model_.DesignLook().backdrop;
  if (backdrop == Backdrop::kYellowPaper) return Colours().value;
  const bool on_artwork = backdrop == Backdrop::kNone && model_.Container() == nullptr;
  return on_artwork ? context_.BackgroundAt(geometry()) : Colours().field;
}

void LabelView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  if (model_.DesignLook().backdrop != Backdrop::kNone) {
    DrawRounded(painter, rect(), 4, Colours().border, Background());
  }
  const int margin = TextMargin(model_);
  const QFontMetricsF metrics(fitted_.font);
  const double spare = width() - 2.0 * margin - metrics.horizontalAdvance(fitted_.shown);
  const bool centred = model_.DesignLook().alignment == Alignment::kCentre;
  painter.setFont(fitted_.font);
  painter.setPen(TextColour(model_, Background(), Colours()));
  painter.drawText(QPointF(margin + (centred ? spare / 2 : 0),
                           Baseline(model_, fitted_.font, fitted_.shown) - y()),
                   fitted_.shown);
}

void AddLabelView(ViewMakers& makers) { makers[ControlKind::kLabel] = MakeView<LabelView>; }

}  // namespace velumar
