#pragma once

#include <QObject>
#include <functional>
#include <optional>
#include <utility>
#include <vector>

#include "charthost/chart_document.h"
#include "charthost/view/drawing_desk.h"
#include "charthost/view/drawing_items.h"
#include "charthost/view/drawing_places.h"
#include "charthost/view/plot_tool.h"

namespace velumar {

class ChartPlot;

// Draws on one chart: new drawings with two clicks or a drag, and moves the one that is selected,
// as a whole or by one of its handles. Places snap to the open, high, low or close of a bar unless
// Ctrl is held; Enter sets one at the crosshair.
class DrawingTool : public QObject, public PlotTool {
  Q_OBJECT

 public:
  DrawingTool(ChartPlot& plot, ChartDocument& document, DrawingDesk& desk);

  bool Press(const QMouseEvent& event) override;
  bool DoubleClick(const QMouseEvent& event) override;
  bool Key(const QKeyEvent& event) override;
  void Move(const QMouseEvent& event) override;
  void Release(const QMouseEvent& event) override;
  std::optional<Qt::CursorShape> CursorAt(QPointF pixel) const override;
  void SetColours(const Palette& colours) override { colours_ = colours; }
  void BeforeReplot() override;

  // Those on the chart, by their place in the list of the security.
  std::vector<std::size_t> Shown() const;
  const Drawing& At(std::size_t index) const { return List().All().at(index); }
  std::optional<std::size_t> Selected() const {
    const bool valid = list_ == &List() && selected_ < List().All().size();
    return valid ? selected_ : std::nullopt;
  }
  void Select(std::optional<std::size_t> index);
  // Scrolls to the selected drawing if it is out of view.
  void Reveal();
  const DrawingPlaces& Places() const { return places_; }

  bool CanUndo() const { return List().CanUndo(places_.Time().Known()); }
  bool CanRedo() const { return List().CanRedo(places_.Time().Known()); }
  void Undo();
  void Redo();
  // The selected drawing, if there is one.
  void Delete();
  void Duplicate();
  void Recolour(int colour);
  void EditText();

 signals:
  // What is on the chart, the selected drawing or what can be undone has changed.
  void Changed();

 private:
  struct Drag {
    QPointF from;
    std::optional<std::size_t> handle;
    Drawing before;
  };

  SecurityKey Security() const { return {document_.Symbol(), document_.Name()}; }
  DrawingList& List() const { return desk_.Of(Security()); }
  std::optional<DrawingHit> HitAt(QPointF pixel) const;

  void SetAnchor(const Anchor& anchor, QPointF pixel);
  // At the crosshair, on the close of its bar.
  void SetAnchorByKey();
  // The anchor at the pointer is where it belongs.
  void FixAnchor();
  void Finish();
  void Cancel();
  // The drawing of a drag when the pointer is there.
  Drawing Dragged(QPointF pixel, bool snaps) const;
  void AskText(const QString& title, const QString& text,
               const std::function<void(const std::string&)>& take);
  void Add(Drawing drawing);
  void Change(Drawing drawing);
  void Save();
  void Deselect();
  void Redraw() const;

  ChartPlot& plot_;
  ChartDocument& document_;
  DrawingDesk& desk_;
  DrawingPlaces places_;
  DrawingItems items_;
  Palette colours_ = Palette::Light();
  const DrawingList* list_ = nullptr;  // on the chart: a new run may show another series
  std::vector<std::size_t> shown_;
  std::vector<Shape> shapes_;  // of shown_, in their order; empty until the next drawing
  std::optional<std::size_t> selected_;
  std::optional<Drawing> draft_;  // its last anchor follows the pointer
  QPointF pressed_at_;            // where its last anchor but one was set
  std::optional<Drag> drag_;
  std::optional<Drawing> dragged_;  // as it is now
  std::pair<bool, bool> steps_;     // whether undo and redo were possible
  bool saving_ = false;
};

}  // namespace velumar
