#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "marketdata/bar.h"
#include "marketdata/bar_layout.h"
#include "marketdata/bytes.h"

namespace velumar {

// A series as eight parallel arrays, oldest bar first.
struct BarArrays {
  std::vector<std::int32_t> dates;
  std::vector<std::int32_t> times;
  std::vector<float> opens;
  std::vector<float> highs;
  std::vector<float> lows;
  std::vector<float> closes;
  std::vector<float> volumes;
  std::vector<float> open_interests;
};

// `records` holds whole records, each of layout.RecordSize() bytes.
BarArrays DecodeBars(const BarLayout& layout, ByteView records);
Bar DecodeBar(const BarLayout& layout, ByteView record);

// Fills `record`, of layout.RecordSize() bytes; fields that the layout lacks are left out. Gives
// the field whose value the file format can't hold, if there is one; `record` is useless then.
std::optional<BarField> EncodeBar(const BarLayout& layout, const Bar& bar, ByteSpan record);

}  // namespace velumar
