#pragma once

#include <QPointF>
#include <optional>

#include "charts/palette.h"

class QKeyEvent;
class QMouseEvent;

namespace velumar {

// One use of mouse and keys on a chart, with what it draws there. A ChartPlot offers each event to
// its tools in the order in which they were added, and does the usual thing if none takes it. The
// tool that takes a press gets everything until the release.
class PlotTool {
 public:
  virtual ~PlotTool() = default;

  // True if the tool takes the event.
  virtual bool Press(const QMouseEvent& /*event*/) { return false; }
  virtual bool DoubleClick(const QMouseEvent& /*event*/) { return false; }
  virtual bool Key(const QKeyEvent& /*event*/) { return false; }
  virtual void KeyReleased(const QKeyEvent& /*event*/) {}
  // The pointer moves: after a press that the tool has taken, or without a button.
  virtual void Move(const QMouseEvent& /*event*/) {}
  // After a press that the tool has taken.
  virtual void Release(const QMouseEvent& /*event*/) {}
  // The pointer's shape there; nothing where the tool does nothing.
  virtual std::optional<Qt::CursorShape> CursorAt(QPointF /*pixel*/) const { return std::nullopt; }

  virtual void SetColours(const Palette& /*colours*/) {}
  // Called before each drawing, once all axes have their places and ranges.
  virtual void BeforeReplot() {}
};

}  // namespace velumar
