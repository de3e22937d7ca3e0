#include "charthost/drawings/drawing_shape.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "base/number_text.h"

namespace velumar {
namespace {

constexpr double kLabelGap = 3;

// The parameters of the points of a line, 0 at `from` and 1 at `to`, that lie between two bounds in
// one direction.
bool Narrow(double from, double step, double lower, double upper, double& first, double& last) {
  if (step == 0) return from >= lower && from <= upper;
  const double one = (lower - from) / step;
  const double other = (upper - from) / step;
  first = std::max(first, std::min(one, other));
  last = std::min(last, std::max(one, other));
  return first <= last;
}

std::optional<Segment> ClippedUpTo(const Segment& line, double last, const Box& area) {
  const double dx = line.to.x - line.from.x;
  const double dy = line.to.y - line.from.y;
  double first = 0;
  if (!std::isfinite(dx) || !std::isfinite(dy)) return std::nullopt;
  if (!Narrow(line.from.x, dx, area.left, area.right, first, last) ||
      !Narrow(line.from.y, dy, area.top, area.bottom, first, last) || !std::isfinite(last)) {
    return std::nullopt;
  }
  const auto at = [&](double share) {
    return Point{line.from.x + share * dx, line.from.y + share * dy};
  };
  return Segment{at(first), at(last)};
}

double Distance(Point a, Point b) { return std::hypot(a.x - b.x, a.y - b.y); }

double Distance(Point point, const Segment& line) {
  const double dx = line.to.x - line.from.x;
  const double dy = line.to.y - line.from.y;
  const double square = dx * dx + dy * dy;
  if (square == 0) return Distance(point, line.from);
  const double share = ((point.x - line.from.x) * dx + (point.y - line.from.y) * dy) / square;
  const double within = std::clamp(share, 0.0, 1.0);
  return Distance(point, Point{line.from.x + within * dx, line.from.y + within * dy});
}

class ShapeMaker {
 public:
  ShapeMaker(const Drawing& drawing, const Scene& scene) : drawing_(drawing), scene_(scene) {
    for (const Anchor& anchor : drawing.anchors) {
      points_.push_back(scene.to_pixel(scene.time.PlaceOf(anchor.time), anchor.price));
    }
  }

  Shape Make() {
    const bool placed = std::ranges::all_of(
        points_, [](Point point) { return std::isfinite(point.x) && std::isfinite(point.y); });
    if (!placed || points_.empty()) return {};
    shape_.handles = points_;
    if (drawing_.kind == DrawingKind::kHorizontalLine) {
      AddHorizontal();
    } else if (drawing_.kind == DrawingKind::kText) {
      AddLabel(drawing_.text, points_[0]);
    } else if (points_.size() >= 2) {
      AddOfTwoPoints();
    }
    return std::move(shape_);
  }

 private:
  void AddOfTwoPoints() {
    switch (drawing_.kind) {
      case DrawingKind::kRay:
        return Add(ClippedRay({points_[0], points_[1]}, scene_.area));
      case DrawingKind::kChannel:
        return AddChannel();
      case DrawingKind::kRectangle:
        return AddRectangle();
      case DrawingKind::kFibonacci:
        return AddRetracement();
      default:
        shape_.arrow_head = drawing_.kind == DrawingKind::kArrow;
        return AddLine(points_[0], points_[1]);
    }
  }

  void Add(const std::optional<Segment>& line) {
    if (line) shape_.lines.push_back(*line);
  }
  void AddLine(Point from, Point to) { Add(Clipped({from, to}, scene_.area)); }

  // The label of a price lies above its line, at the left edge.
  void AddHorizontal() {
    const double y = points_[0].y;
    AddLine({scene_.area.left, y}, {scene_.area.right, y});
    AddPriceLabel(scene_.price_text(drawing_.anchors[0].price), scene_.area.left, y);
  }

  void AddChannel() {
    AddLine(points_[0], points_[1]);
    if (points_.size() < 3) return;
    const double dx = points_[1].x - points_[0].x;
    const double slope = dx == 0 ? 0 : (points_[1].y - points_[0].y) / dx;
    const double shift = points_[2].y - (points_[0].y + slope * (points_[2].x - points_[0].x));
    AddLine({points_[0].x, points_[0].y + shift}, {points_[1].x, points_[1].y + shift});
  }

  void AddRectangle() {
    const Box box = {std::min(points_[0].x, points_[1].x), std::min(points_[0].y, points_[1].y),
                     std::max(points_[0].x, points_[1].x), std::max(points_[0].y, points_[1].y)};
    AddLine({box.left, box.top}, {box.right, box.top});
    AddLine({box.right, box.top}, {box.right, box.bottom});
    AddLine({box.right, box.bottom}, {box.left, box.bottom});
    AddLine({box.left, box.bottom}, {box.left, box.top});
    const Box& area = scene_.area;
    const Box fill = {std::max(box.left, area.left), std::max(box.top, area.top),
                      std::min(box.right, area.right), std::min(box.bottom, area.bottom)};
    if (fill.left < fill.right && fill.top < fill.bottom) shape_.fill = fill;
  }

  void AddRetracement() {
    AddLine(points_[0], points_[1]);
    const double left = std::min(points_[0].x, points_[1].x);
    const double right = std::max(points_[0].x, points_[1].x);
    const auto levels = RetracementLevels(drawing_.anchors[0].price, drawing_.anchors[1].price);
    for (const RetracementLevel& level : levels) {
      const double y = scene_.to_pixel(0, level.price).y;
      AddLine({left, y}, {right, y});
    }
    // Where the labels don't all fit, those of the levels that are read most stay.
    for (const std::size_t i : {0, 6, 3, 4, 2, 1, 5}) AddLevelLabel(levels[i], left);
  }

  void AddLevelLabel(const RetracementLevel& level, double x) {
    const double y = scene_.to_pixel(0, level.price).y;
    const bool free = std::ranges::none_of(shape_.labels, [&](const Shape::Label& label) {
      return std::abs(label.box.bottom - y) < label.box.bottom - label.box.top;
    });
    const std::string share = PatternText(static_cast<float>(level.share * 100), "##0.#") + " %  ";
    if (free && std::isfinite(y)) AddPriceLabel(share + scene_.price_text(level.price), x, y);
  }

  void AddPriceLabel(const std::string& text, double x, double y) {
    if (!scene_.area.Contains({std::max(x, scene_.area.left), y})) return;
    AddLabel(text, {std::max(x, scene_.area.left) + kLabelGap, y - scene_.text_size(text).y});
  }

  void AddLabel(const std::string& text, Point corner) {
    const Point size = scene_.text_size(text);
    shape_.labels.push_back({{corner.x, corner.y, corner.x + size.x, corner.y + size.y}, text});
  }

  const Drawing& drawing_;
  const Scene& scene_;
  std::vector<Point> points_;
  Shape shape_;
};

bool IsHit(const Shape& shape, Point point, double reach) {
  const auto near_line = [&](const Segment& line) { return Distance(point, line) <= reach; };
  const auto on_label = [&](const Shape::Label& label) { return label.box.Contains(point); };
  return std::ranges::any_of(shape.lines, near_line) || std::ranges::any_of(shape.labels, on_label);
}

}  // namespace

Shape ShapeOf(const Drawing& drawing, const Scene& scene) {
  return ShapeMaker(drawing, scene).Make();
}

std::optional<Segment> Clipped(const Segment& line, const Box& area) {
  return ClippedUpTo(line, 1, area);
}

std::optional<Segment> ClippedRay(const Segment& line, const Box& area) {
  return ClippedUpTo(line, std::numeric_limits<double>::infinity(), area);
}

std::optional<DrawingHit> HitAt(std::span<const Shape> shapes, Point point, double reach) {
  for (std::size_t i = shapes.size(); i-- > 0;) {
    const std::vector<Point>& handles = shapes[i].handles;
    for (std::size_t handle = 0; handle < handles.size(); ++handle) {
      if (Distance(point, handles[handle]) <= reach) return DrawingHit{i, handle};
    }
    if (IsHit(shapes[i], point, reach)) return DrawingHit{i, std::nullopt};
  }
  return std::nullopt;
}

std::optional<double> SnappedPrice(std::span<const float> prices, double y, double reach,
                                   const std::function<double(double price)>& to_y) {
  std::optional<double> nearest;
  for (const double price : prices) {
    const double distance = std::abs(to_y(price) - y);
    if (!(distance <= reach)) continue;
    reach = distance;
    nearest = price;
  }
  return nearest;
}

}  // namespace velumar
