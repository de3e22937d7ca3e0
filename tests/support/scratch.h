#pragma once

#include <string>
#include <vector>

#include "marketdata/bar.h"
#include "marketdata/directory_editor.h"
#include "marketdata/index_cache.h"
#include "marketdata/metalib_reader.h"
#include "support/scratch_folder.h"

namespace velumar {

// Bar i of a test series: its volume is 1000 + i, its close rises and falls.
inline Bar MadeBar(int i, int date, int time = 0) {
  const float close = 100.0F + static_cast<float>(i % 7) - static_cast<float>(i % 5);
  return {date, time, close - 0.5F, close + 1, close - 1, close, 1000.0F + static_cast<float>(i),
          7};
}

// Every month has 28 days; a store does not mind.
inline int MadeDate(int i) {
  return (2000 + i / 336) * 10000 + (i / 28 % 12 + 1) * 100 + i % 28 + 1;
}

inline std::vector<Bar> DailyBars(int count) {
  std::vector<Bar> bars;
  for (int i = 0; i < count; ++i) bars.push_back(MadeBar(i, MadeDate(i)));
  return bars;
}

// Twenty bars a day from 10:00 on.
inline std::vector<Bar> IntradayBars(int count, int minutes) {
  std::vector<Bar> bars;
  for (int i = 0; i < count; ++i) {
    const int minute = 600 + i % 20 * minutes;
    bars.push_back(MadeBar(i, MadeDate(i / 20), minute / 60 * 10000 + minute % 60 * 100));
  }
  return bars;
}

inline BarArrays ArraysOf(const std::vector<Bar>& bars) {
  BarArrays all;
  for (const Bar& bar : bars) {
    all.dates.push_back(bar.date);
    all.times.push_back(bar.time);
    all.opens.push_back(bar.open);
    all.highs.push_back(bar.high);
    all.lows.push_back(bar.low);
    all.closes.push_back(bar.close);
    all.volumes.push_back(bar.volume);
    all.open_interests.push_back(bar.open_interest);
  }
  return all;
}

// From the directory that is open.
inline std::vector<Bar> ReadBars(MetaLibReader& reader, const std::string& symbol, int interval) {
  reader.SelectSeries(symbol, interval == -1 ? 1 : 0, interval);
  reader.ReadSeries();
  std::vector<Bar> bars;
  for (std::size_t i = 0; i < reader.GetDates().size(); ++i) {
    bars.push_back({reader.GetDates()[i], reader.GetTimes()[i], reader.GetOpens()[i],
                    reader.GetHighs()[i], reader.GetLows()[i], reader.GetCloses()[i],
                    reader.GetVolumes()[i], reader.GetOpenInterests()[i]});
  }
  return bars;
}

inline std::vector<Bar> ReadBars(const std::string& directory, const std::string& symbol,
                                 int interval) {
  IndexCache cache;
  MetaLibReader reader(cache);
  reader.OpenDirectory(directory);
  return ReadBars(reader, symbol, interval);
}

}  // namespace velumar
