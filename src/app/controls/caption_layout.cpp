#include "app/controls/caption_layout.h"

#include <QFontMetricsF>
#include <algorithm>
#include <cmath>
#include <limits>

#include "app/controls/control_view.h"
#include "app/theme/text_fit.h"

namespace velumar {

namespace {

constexpr double kDisplayBase = 5;  // of display type above the lower edge of its label

bool IsDisplay(const Control& label) { return label.DesignLook().face == FontFace::kImpact; }

bool SpansWindow(const Control& label) {
  return label.Width() >= 0.9F * label.Owner().Width() &&
         label.Height() >= 0.6F * label.Owner().Height();
}

bool TakesInput(const Control& control) {
  return control.Kind() != ControlKind::kLabel && control.Kind() != ControlKind::kPicture &&
         control.Kind() != ControlKind::kFrame && control.Kind() != ControlKind::kListBox;
}

// Two places stand level when they share at least half the height of the lower one.
bool Level(const QRect& a, const QRect& b) {
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
    if (!TakesInput(*control) || !Level(place, other)) continue;
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
  const Control* beside = IsCaption(label) ? Neighbour(label) : nullptr;
  return MiddleOf(beside == nullptr ? place : LogicalPlace(*beside)) + half_capital;
}

}  // namespace

bool IsCaption(const Control& control) {
  return control.Kind() == ControlKind::kLabel && !IsDisplay(control) &&
         control.DesignLook().backdrop == Backdrop::kNone;
}

int TextMargin(const Control& label) {
  if (label.DesignLook().backdrop != Backdrop::kNone) return 5;
  return SpansWindow(label) ? 12 : 0;
}

double Baseline(const Control& label, const QFont& font, const QString& text) {
  const QRect place = LogicalPlace(label);
  const QRectF ink = QFontMetricsF(font).tightBoundingRect(text);
  const double highest = place.top() - ink.top();
  const double lowest = place.top() + place.height() - ink.bottom();
  const double wanted = std::round(WantedBaseline(label, font));
  return lowest < highest ? highest : std::clamp(wanted, highest, lowest);
}

int CaptionPixels(const Form& form, const Look& look, const Typefaces& faces) {
  QFont font = faces.For(look);
  for (const Control* control : form.Controls()) {
    const Look& other = control->DesignLook();
    if (!IsCaption(*control) || other.face != look.face || other.points != look.points) continue;
    const QFont fitted =
        FitText(ToQString(control->Text()), faces.For(other), LogicalPlace(*control).size()).font;
    font.setPixelSize(std::min(font.pixelSize(), fitted.pixelSize()));
  }
  return font.pixelSize();
}

}  // namespace velumar
