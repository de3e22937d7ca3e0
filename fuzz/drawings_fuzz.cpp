// The file of a trader's drawings: read as a whole or refused, and then shown on bars whose dates
// it may miss by millennia.

#include <cmath>

#include "charthost/drawings/drawing_file.h"
#include "charthost/drawings/drawing_shape.h"
#include "packed_files.h"

namespace velumar {
namespace {

bool IsIn(const Point& point, const Box& area) {
  constexpr double kRounding = 1e-3;
  return point.x >= area.left - kRounding && point.x <= area.right + kRounding &&
         point.y >= area.top - kRounding && point.y <= area.bottom + kRounding;
}

// Weeks of five daily bars.
void TryShapes(const Drawing& drawing) {
  BarArrays stored;
  for (int day = 0; day < 20; ++day) {
    stored.dates.push_back(20200101 + day);
    stored.times.push_back(0);
  }
  const std::vector<int> weeks = {0, 5, 10, 15};
  const TimeAxis time(stored, weeks, -1);
  const Scene scene{.time = time,
                    .area = {0, 0, 800, 400},
                    .to_pixel =
                        [](double place, double price) {
                          return Point{place * 10, 400 - std::log(price) * 40};
                        },
                    .price_text = [](double) { return std::string("1.00"); },
                    .text_size =
                        [](const std::string& text) {
                          return Point{static_cast<double>(text.size()), 10};
                        }};
  const std::vector<Shape> shapes = {ShapeOf(drawing, scene)};
  for (const Segment& line : shapes.front().lines) {
    Require(IsIn(line.from, scene.area) && IsIn(line.to, scene.area));
  }
  HitAt(shapes, {400, 200}, 5);
}

}  // namespace
}  // namespace velumar

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
  using namespace velumar;
  try {
    const DrawingsBySecurity drawings = ReadDrawings(AsText(data, size));
    Require(ReadDrawings(DrawingsText(drawings)) == drawings);
    for (const auto& [security, of_one] : drawings) {
      for (const Drawing& drawing : of_one) TryShapes(drawing);
    }
  } catch (const DrawingFileError&) {
    // Refused.
  }
  return 0;
}
