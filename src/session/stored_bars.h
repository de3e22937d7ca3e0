#pragma once

#include <cstdint>
#include <vector>

#include "marketdata/bar.h"
#include "marketdata/metalib_writer.h"
#include "session/sim_session.h"

namespace velumar {

// The series in memory as the arrays that a writer takes; they must outlive the object.
struct SeriesView {
  explicit SeriesView(const SimSession& session);
  explicit SeriesView(const BarArrays& bars);

  const std::vector<std::int32_t>& dates;
  const std::vector<std::int32_t>& times;
  const std::vector<float>& opens;
  const std::vector<float>& highs;
  const std::vector<float>& lows;
  const std::vector<float>& closes;
  const std::vector<float>& volumes;
  const std::vector<float>& open_interests;
};

// Makes the selected series of the writer, which holds the first `before` bars, hold the first
// `after` ones: bar by bar, or by one write of the whole file if many change. Throws MetaLibError.
void MoveStoredBars(MetaLibWriter& writer, const SeriesView& bars, bool daily, int before,
                    int after);
// The same whatever the series holds.
void WriteStoredBars(MetaLibWriter& writer, const SeriesView& bars, int count);

}  // namespace velumar
