#pragma once

#include <optional>

#include "marketdata/bar.h"
#include "marketdata/bar_layout.h"
#include "marketdata/number_format.h"

namespace velumar {

// `records` holds whole records, each of layout.RecordSize() bytes.
BarArrays DecodeBars(const BarLayout& layout, ByteView records);
Bar DecodeBar(const BarLayout& layout, ByteView record);

// Fills `record`, of layout.RecordSize() bytes, with the fields of the layout. Returns the field
// whose value the file format cannot hold, if there is one; `record` is then undefined.
std::optional<BarField> EncodeBar(const BarLayout& layout, const Bar& bar, ByteSpan record);

}  // namespace velumar
