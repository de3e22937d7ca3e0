#include "charthost/view/drawing_tool.h"

#include <QInputDialog>
#include <algorithm>
#include <cmath>
#include <utility>

#include "charthost/view/chart_plot.h"
#include "charts/qt_text.h"

namespace velumar {
namespace {

// In pixels.
constexpr double kReach = 6;
constexpr double kDragged = 6;  // a shorter drag is a click

Point PointOf(QPointF pixel) { return {pixel.x(), pixel.y()}; }

bool Snaps(const QMouseEvent& event) { return !event.modifiers().testFlag(Qt::ControlModifier); }

}  // namespace

DrawingTool::DrawingTool(ChartPlot& plot, ChartDocument& document, DrawingDesk& desk)
    : plot_(plot),
      document_(document),
      desk_(desk),
      places_(plot, document),
      items_(plot, plot.Prices()) {
  connect(&desk_, &DrawingDesk::Changed, this, [this] {
    shapes_.clear();
    // Another chart of the security has changed the list.
    if (!saving_) Deselect();
    Redraw();
  });
  connect(&desk_, &DrawingDesk::KindChosen, this, [this] {
    if (draft_ && desk_.Kind() != draft_->kind) draft_.reset();
    Redraw();
  });
}

std::optional<DrawingHit> DrawingTool::HitAt(QPointF pixel) const {
  if (!places_.Contains(pixel)) return std::nullopt;
  return velumar::HitAt(shapes_, PointOf(pixel), kReach);
}

bool DrawingTool::Press(const QMouseEvent& event) {
  if (event.button() != Qt::LeftButton || !places_.Contains(event.position())) return false;
  if (desk_.Kind()) {
    SetAnchor(places_.AnchorAt(event.position(), Snaps(event)), event.position());
    return true;
  }
  const std::optional<DrawingHit> hit = HitAt(event.position());
  if (!hit) {
    Select(std::nullopt);
    return false;
  }
  const std::size_t index = shown_[hit->shape];
  Select(index);
  drag_ = Drag{event.position(), hit->handle, At(index)};
  return true;
}

void DrawingTool::SetAnchor(const Anchor& anchor, QPointF pixel) {
  pressed_at_ = pixel;
  if (draft_) {
    draft_->anchors.back() = anchor;
  } else {
    draft_ = Drawing{.kind = *desk_.Kind(), .anchors = {anchor}, .colour = desk_.Colour()};
  }
  FixAnchor();
}

void DrawingTool::SetAnchorByKey() {
  const std::optional<ChartPlace> place = plot_.StepPointer(0);
  if (!place) return;
  const Point pixel = places_.ToPixel(place->bar, place->price);
  SetAnchor({places_.Time().At(place->bar), place->price}, {pixel.x, pixel.y});
}

// Two anchors at one place make no line: the second click is waited for.
void DrawingTool::FixAnchor() {
  const std::vector<Anchor>& anchors = draft_->anchors;
  if (anchors.size() > 1 && anchors.back() == anchors[anchors.size() - 2]) return;
  if (anchors.size() == RowOf(draft_->kind).anchors) return Finish();
  draft_->anchors.push_back(anchors.back());
  Redraw();
}

void DrawingTool::Finish() {
  Drawing drawing = *std::exchange(draft_, std::nullopt);
  desk_.Choose(std::nullopt);
  if (drawing.kind != DrawingKind::kText) return Add(std::move(drawing));
  AskText(tr("Text on the chart"), QString(),
          [this, drawing = std::move(drawing)](const std::string& text) {
            Drawing written = drawing;
            written.text = text;
            Add(std::move(written));
          });
  Redraw();
}

void DrawingTool::Cancel() {
  draft_.reset();
  desk_.Choose(std::nullopt);
  Redraw();
}

bool DrawingTool::DoubleClick(const QMouseEvent& event) {
  if (event.button() != Qt::LeftButton) return false;
  if (desk_.Kind() && places_.Contains(event.position())) {
    SetAnchor(places_.AnchorAt(event.position(), Snaps(event)), event.position());
    return true;
  }
  const std::optional<DrawingHit> hit = HitAt(event.position());
  if (!hit) return false;
  Select(shown_[hit->shape]);
  EditText();
  return true;
}

void DrawingTool::Move(const QMouseEvent& event) {
  if (draft_) {
    draft_->anchors.back() = places_.AnchorAt(event.position(), Snaps(event));
    return Redraw();
  }
  if (!drag_) return;
  const QPointF moved = event.position() - drag_->from;
  if (!dragged_ && std::hypot(moved.x(), moved.y()) < kDragged / 2) return;
  dragged_ = Dragged(event.position(), Snaps(event));
  Redraw();
}

void DrawingTool::Release(const QMouseEvent& event) {
  if (draft_) {
    const QPointF moved = event.position() - pressed_at_;
    if (std::hypot(moved.x(), moved.y()) >= kDragged) FixAnchor();
    return;
  }
  drag_.reset();
  if (auto changed = std::exchange(dragged_, std::nullopt)) Change(*std::move(changed));
}

Drawing DrawingTool::Dragged(QPointF pixel, bool snaps) const {
  Drawing drawing = drag_->before;
  if (!drag_->handle) return places_.Shifted(drawing, pixel - drag_->from);
  drawing.anchors[*drag_->handle] = places_.AnchorAt(pixel, snaps);
  return drawing;
}

bool DrawingTool::Key(const QKeyEvent& event) {
  if (event.key() == Qt::Key_Escape) {
    const bool any = desk_.Kind() || selected_;
    if (desk_.Kind()) Cancel();
    Select(std::nullopt);
    return any;
  }
  if ((event.modifiers() & ~Qt::KeypadModifier) != Qt::NoModifier) return false;
  if (desk_.Kind() && (event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter)) {
    SetAnchorByKey();
    return true;
  }
  if (event.key() == Qt::Key_Delete && selected_) {
    Delete();
    return true;
  }
  const auto& rows = DrawingCatalogue();
  const auto row = std::ranges::find_if(
      rows, [&event](const DrawingRow& one) { return event.key() == one.letter; });
  if (row == rows.end() || document_.Model().Series().size() == 0) return false;
  desk_.Choose(row->kind);
  return true;
}

std::optional<Qt::CursorShape> DrawingTool::CursorAt(QPointF pixel) const {
  if (desk_.Kind() || !places_.Contains(pixel)) return std::nullopt;
  const std::optional<DrawingHit> hit = HitAt(pixel);
  if (!hit) return std::nullopt;
  return hit->handle ? Qt::SizeAllCursor : Qt::PointingHandCursor;
}

void DrawingTool::BeforeReplot() {
  const TimeAxis time = places_.Time();
  const Scene scene = places_.MakeScene(time);
  const DrawingList& list = List();
  if (std::exchange(list_, &list) != &list) Deselect();
  const std::vector<std::size_t> before = std::exchange(shown_, Shown());
  if (selected_ && std::ranges::find(shown_, *selected_) == shown_.end()) selected_.reset();
  std::vector<ShownShape> shapes;
  shapes_.clear();
  for (const std::size_t index : shown_) {
    const bool selected = index == selected_;
    const Drawing& drawing = selected && dragged_ ? *dragged_ : list.All()[index];
    shapes_.push_back(ShapeOf(drawing, scene));
    shapes.push_back({shapes_.back(), drawing.colour, selected});
  }
  if (draft_ && time.Bars() > 0) {
    shapes.push_back({ShapeOf(*draft_, scene), draft_->colour, true});
  }
  items_.Show(shapes, colours_);
  const std::pair steps(CanUndo(), CanRedo());
  const bool other_steps = std::exchange(steps_, steps) != steps;
  if (shown_ != before || other_steps) emit Changed();
}

std::vector<std::size_t> DrawingTool::Shown() const {
  const TimeAxis time = places_.Time();
  if (time.Bars() == 0) return {};
  return List().ShownAt(time.Known());
}

void DrawingTool::Select(std::optional<std::size_t> index) {
  if (selected_ == index) return;
  selected_ = index;
  emit Changed();
  Redraw();
}

void DrawingTool::Reveal() {
  if (!Selected()) return;
  ViewWindow& window = document_.Model().Window();
  const double place = places_.Time().PlaceOf(At(*selected_).anchors.front().time);
  if (place > window.First() && place < window.Last()) return;
  const double half = window.Span() / 2;
  window.ShowBetween(place - half, place + half);
  Redraw();
}

void DrawingTool::AskText(const QString& title, const QString& text,
                          const std::function<void(const std::string&)>& take) {
  auto* const dialog = new QInputDialog(&plot_);
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  dialog->setWindowTitle(title);
  dialog->setLabelText(tr("Text:"));
  dialog->setTextValue(text);
  connect(dialog, &QInputDialog::textValueSelected, this, [take](const QString& typed) {
    const std::string kept = KeptText(FromQt(typed));
    if (!kept.empty()) take(kept);
  });
  dialog->open();
}

void DrawingTool::EditText() {
  if (!Selected() || At(*selected_).kind != DrawingKind::kText) return;
  const Drawing before = At(*selected_);
  AskText(tr("Text on the chart"), ToQt(before.text), [this, before](const std::string& text) {
    if (!Selected() || At(*selected_) != before) return;
    Drawing drawing = before;
    drawing.text = text;
    Change(std::move(drawing));
  });
}

void DrawingTool::Add(Drawing drawing) {
  drawing.known = places_.Time().Known();
  if (!List().Add(std::move(drawing))) return;
  selected_ = List().All().size() - 1;
  Save();
}

// What is moved now shows what the trader knows now.
void DrawingTool::Change(Drawing drawing) {
  if (!Selected()) return;
  const Drawing& before = At(*selected_);
  if (drawing.anchors != before.anchors || drawing.text != before.text) {
    drawing.known = std::max(drawing.known, places_.Time().Known());
  }
  List().Change(*selected_, std::move(drawing));
  Save();
}

void DrawingTool::Undo() {
  List().Undo(places_.Time().Known());
  selected_.reset();
  Save();
}

void DrawingTool::Redo() {
  List().Redo(places_.Time().Known());
  selected_.reset();
  Save();
}

void DrawingTool::Delete() {
  if (!Selected()) return;
  List().Remove(*std::exchange(selected_, std::nullopt));
  Save();
}

// Somewhat to the right and below, so that both can be seen.
void DrawingTool::Duplicate() {
  if (!Selected()) return;
  constexpr QPointF kStep(24, 24);
  Add(places_.Shifted(At(*selected_), kStep));
}

void DrawingTool::Recolour(int colour) {
  desk_.SetColour(colour);
  if (!Selected()) return;
  Drawing drawing = At(*selected_);
  drawing.colour = colour;
  Change(std::move(drawing));
}

// The list may get drawings of another program, so the selected one may have another place.
void DrawingTool::Save() {
  const std::optional<Drawing> chosen = Selected() ? std::optional(At(*selected_)) : std::nullopt;
  saving_ = true;
  desk_.Save(Security());
  saving_ = false;
  const std::vector<Drawing>& all = List().All();
  if (chosen && (!Selected() || At(*selected_) != *chosen)) {
    const auto found = std::ranges::find(all, *chosen);
    selected_.reset();
    if (found != all.end()) selected_ = static_cast<std::size_t>(found - all.begin());
  }
  emit Changed();
}

void DrawingTool::Deselect() {
  selected_.reset();
  drag_.reset();
  dragged_.reset();
}

void DrawingTool::Redraw() const { plot_.ModelChanged(); }

}  // namespace velumar
