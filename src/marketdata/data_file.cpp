#include "marketdata/data_file.h"

#include <algorithm>
#include <array>
#include <memory>

#include "base/dates.h"
#include "marketdata/metalib_error.h"

namespace velumar {

int UsableBarCount(int counted_records, std::int64_t file_size, std::size_t record_size) {
  if (record_size == 0) return 0;
  const std::int64_t whole = file_size / static_cast<std::int64_t>(record_size) - 1;
  return static_cast<int>(
      std::clamp<std::int64_t>(counted_records - 1, 0, std::max<std::int64_t>(whole, 0)));
}

DataFile::DataFile(const std::filesystem::path& path, const BarLayout& layout)
    : file_(path, RawFile::Mode::kRead, ThrowMarketFileError), layout_(layout) {
  std::array<std::byte, kCountsSize> counts{};
  if (file_.ReadAt(0, counts) < counts.size()) return;
  bars_ = UsableBarCount(LoadAt<std::uint16_t>(counts, kRecordsOffset), file_.Size(),
                         layout_.RecordSize());
}

Bar DataFile::BarAt(int index) const {
  std::array<std::byte, 4 * kBarFields> buffer{};
  const ByteSpan record = std::span(buffer).first(layout_.RecordSize());
  file_.ReadAt(static_cast<std::int64_t>(record.size()) * (index + 1), record);
  return DecodeBar(layout_, record);
}

BarArrays DataFile::ReadAll() const {
  const std::size_t size = layout_.RecordSize();
  const std::size_t wanted = size * static_cast<std::size_t>(bars_);
  const auto buffer = std::make_unique_for_overwrite<std::byte[]>(wanted);
  const std::size_t got =
      file_.ReadAt(static_cast<std::int64_t>(size), ByteSpan(buffer.get(), wanted));
  // Another program may have cut the file a moment ago.
  const std::size_t whole = size == 0 ? 0 : got - got % size;
  return DecodeBars(layout_, ByteView(buffer.get(), whole));
}

int SmallestGap(const BarArrays& bars) {
  int smallest = 0;
  for (std::size_t i = 1; i < bars.dates.size(); ++i) {
    if (bars.dates[i] != bars.dates[i - 1]) continue;
    const int gap = MinuteOfDay(bars.times[i]) - MinuteOfDay(bars.times[i - 1]);
    if (gap > 0 && (smallest == 0 || gap < smallest)) smallest = gap;
  }
  return smallest;
}

FileReplacement ReplacementOf(const std::filesystem::path& target) {
  std::filesystem::path draft = target;
  draft += ".new";
  return {target, draft, FileAccess::kUsual, ThrowMarketFileError};
}

}  // namespace velumar
