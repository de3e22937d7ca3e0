#pragma once

#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "charthost/drawings/drawing.h"

namespace velumar {

// Pixels, or any other units whose y grows downwards.
struct Point {
  double x = 0;
  double y = 0;

  bool operator==(const Point&) const = default;
};

struct Box {
  double left = 0;
  double top = 0;
  double right = 0;
  double bottom = 0;

  bool Contains(Point point) const {
    return point.x >= left && point.x <= right && point.y >= top && point.y <= bottom;
  }
  bool operator==(const Box&) const = default;
};

struct Segment {
  Point from;
  Point to;
};

// What a drawing looks like. Lines and fill lie within the area of the prices; the rest may not.
struct Shape {
  struct Label {
    Box box;
    std::string text;
  };

  std::vector<Segment> lines = {};
  std::optional<Box> fill = {};
  std::vector<Label> labels = {};
  std::vector<Point> handles = {};  // one for each anchor
  bool arrow_head = false;          // at the end of the line
};

// What turns a drawing into a shape.
struct Scene {
  const TimeAxis& time;
  Box area;  // of the prices
  std::function<Point(double place, double price)> to_pixel;
  std::function<std::string(double price)> price_text;
  std::function<Point(const std::string& text)> text_size;
};

// Empty if the drawing has no place in the scene, such as a price below 0 on a logarithmic axis.
// With fewer anchors than the kind needs, as while it is drawn, the part that they make.
Shape ShapeOf(const Drawing& drawing, const Scene& scene);

// The part of a line from `from` through `to` that lies in the area: of the segment, of the ray
// beyond `to`, or nothing.
std::optional<Segment> Clipped(const Segment& line, const Box& area);
std::optional<Segment> ClippedRay(const Segment& line, const Box& area);

// What is at a point.
struct DrawingHit {
  std::size_t shape = 0;
  std::optional<std::size_t> handle = {};  // otherwise the drawing as a whole
};

// The last shape within `reach` of the point; its handles come before its lines.
std::optional<DrawingHit> HitAt(std::span<const Shape> shapes, Point point, double reach);

// The price closest to `y` among open, high, low and close, if it is within `reach`.
std::optional<double> SnappedPrice(std::span<const float> prices, double y, double reach,
                                   const std::function<double(double price)>& to_y);

}  // namespace velumar
