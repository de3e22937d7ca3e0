#include "marketdata/data_file.h"

#include <algorithm>
#include <array>
#include <memory>

#include "marketdata/metalib_error.h"

namespace velumar {

int UsableBarCount(const RawFile& file, const BarLayout& layout) {
  std::array<std::byte, kCountsSize> counts{};
  if (layout.Empty() || file.ReadAt(0, counts) < counts.size()) return 0;
  const int counted = LoadAt<std::uint16_t>(counts, kRecordsOffset) - 1;
  const auto size = static_cast<std::int64_t>(layout.RecordSize());
  return static_cast<int>(
      std::clamp<std::int64_t>(file.Size() / size - 1, 0, std::max(counted, 0)));
}

Bar ReadBar(const RawFile& file, const BarLayout& layout, int index) {
  std::array<std::byte, 4 * kBarFields> buffer{};
  const ByteSpan record = std::span(buffer).first(layout.RecordSize());
  file.ReadAt(static_cast<std::int64_t>(record.size()) * (index + 1), record);
  return DecodeBar(layout, record);
}

DataFile::DataFile(const std::filesystem::path& path, const BarLayout& layout)
    : file_(path, RawFile::Mode::kRead, ThrowMarketFileError),
      layout_(layout),
      bars_(UsableBarCount(file_, layout)) {}

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

FileReplacement ReplacementOf(const std::filesystem::path& target) {
  std::filesystem::path draft = target;
  draft += ".new";
  return {target, draft, ThrowMarketFileError};
}

}  // namespace velumar
