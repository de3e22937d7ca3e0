#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace velumar {

// A picture of numbers, as the chart library draws it: panes with one axis of x, one below the
// other.
struct NumberPicture {
  enum class Shape : std::uint8_t { kLine, kArea, kBars, kPoints };
  enum class Tone : std::uint8_t { kPlain, kGain, kLoss };
  struct Series {
    Shape shape = Shape::kLine;
    Tone tone = Tone::kPlain;
    std::vector<double> x;  // ascending, except of points
    std::vector<double> y;
  };
  struct Pane {
    std::string title;  // of its axis of y
    std::vector<Series> series;
  };

  std::string title = {};
  std::string x_title = {};
  std::vector<std::string> labels = {};  // of x at 0, 1, 2 ...; empty: numbers
  std::vector<Pane> panes = {};
  std::optional<double> mark = {};  // an upright line at that x
  std::string hint = {};            // shown instead of the panes if there are none
};

}  // namespace velumar
