#pragma once

#include <cstdint>
#include <memory>
#include <optional>

#include "import/import_options.h"
#include "marketdata/bar.h"

namespace velumar {

// Converts the times of a file's bars from one time zone to another, in the order of the file. Of a
// local time that occurs twice at the end of summer time, the first occurrence is the earlier
// moment. A local time that the beginning of summer time skips is read as if the clock had not been
// moved.
class ZoneTimes {
 public:
  // `newest_first`: the bars come in that order. Throws ImportError for an unknown time zone.
  ZoneTimes(const ImportOptions& options, bool newest_first);
  ~ZoneTimes();
  ZoneTimes(const ZoneTimes&) = delete;
  ZoneTimes& operator=(const ZoneTimes&) = delete;

  // `utc_offset` is in minutes, if the line states it, and then counts instead of the zone. Returns
  // false if the time is one that the zone skips. Throws ImportError if there is neither.
  bool Convert(Bar& bar, std::optional<int> utc_offset);

  // False if times are kept as they are written.
  static bool Wanted(const ImportOptions& options);

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace velumar
