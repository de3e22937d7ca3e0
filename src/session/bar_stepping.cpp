#include "session/bar_stepping.h"

#include <algorithm>

#include "base/ignoring.h"
#include "base/text.h"
#include "marketdata/metalib_error.h"
#include "session/intervals.h"

namespace velumar {

namespace {

void Close(MetaLibWriter& writer) {
  writer.CloseSecurity();
  writer.CloseDirectory();
}

}  // namespace

std::int16_t BarStepper::FeedBar(int& index, std::string& symbol) {
  MetaLibWriter writer(cache_);
  int bar = index;
  Open(writer, bar, symbol);
  const int last = session_.LastArrayIndex();
  if (bar > last) {
    bar = last;
  } else {
    Append(writer, bar);
  }
  Close(writer);
  index = bar;
  ShowMoment(bar);
  return -1;
}

std::int16_t BarStepper::FastFeed(std::int16_t& index, std::string& symbol) {
  MetaLibWriter writer(cache_);
  int start = index;
  Open(writer, start, symbol);
  const int newest = std::min(start + kFastStep, session_.LastArrayIndex());
  AppendRange(writer, start + 1, newest);
  Close(writer);
  index = static_cast<std::int16_t>(newest);
  ShowMoment(newest);
  return index;
}

std::int16_t BarStepper::UnfeedBar(std::int16_t& index, std::string& symbol) {
  MetaLibWriter writer(cache_);
  int bar = index;
  Open(writer, bar, symbol);
  if (bar > session_.LastArrayIndex()) {
    bar = 0;
  } else {
    Append(writer, bar);
    DeleteIfStored(writer, bar);
    --bar;
  }
  Close(writer);
  index = static_cast<std::int16_t>(bar);
  ShowPrice(bar);
  return -1;
}

std::int16_t BarStepper::FastUnfeed(std::int16_t& index, std::string& symbol) {
  MetaLibWriter writer(cache_);
  int newest = index;
  Open(writer, newest, symbol);
  const int left = std::max(newest - kFastStep, 0);
  DeleteRange(writer, left + 1, newest);
  Close(writer);
  index = static_cast<std::int16_t>(newest);
  ShowPrice(left);
  return static_cast<std::int16_t>(left);
}

void BarStepper::Open(MetaLibWriter& writer, int& index, std::string& symbol) const {
  if (index == -1) index = 0;
  symbol = NormalisedSymbol(symbol);
  writer.OpenDirectory(session_.SimDir);
  if (!writer.SecurityExists(symbol)) return;
  if (const auto series = ReplayableInterval(desktop_.form1().cbxPeriod.Text())) {
    writer.SelectSeries(symbol, series->daily, series->minutes);
  }
}

void BarStepper::Append(MetaLibWriter& writer, int bar) const {
  const auto i = static_cast<std::size_t>(bar);
  writer.AppendBar(session_.BarDate.at(i), session_.BarTime.at(i), session_.BarOpen.at(i),
                   session_.BarHigh.at(i), session_.BarLow.at(i), session_.BarClose.at(i),
                   session_.BarVolume.at(i), session_.BarOpenInt.at(i));
}

void BarStepper::Delete(MetaLibWriter& writer, int bar) const {
  const auto i = static_cast<std::size_t>(bar);
  if (Daily()) {
    writer.DeleteDailyBar(session_.BarDate.at(i));
  } else {
    writer.DeleteIntradayBar(session_.BarDate.at(i), session_.BarTime.at(i));
  }
}

void BarStepper::DeleteIfStored(MetaLibWriter& writer, int bar) const {
  const auto i = static_cast<std::size_t>(bar);
  const bool stored =
      Daily() ? writer.DailyBarExists(session_.BarDate.at(i))
              : writer.IntradayBarExists(session_.BarDate.at(i), session_.BarTime.at(i));
  if (stored) Delete(writer, bar);
}

void BarStepper::AppendRange(MetaLibWriter& writer, int first, int last) const {
  int done = first;
  try {
    for (; done <= last; ++done) Append(writer, done);
  } catch (const MetaLibError&) {
    IgnoringErrors([&] {
      while (--done >= first) Delete(writer, done);
    });
    throw;
  }
}

void BarStepper::DeleteRange(MetaLibWriter& writer, int first, int last) const {
  int done = last;
  try {
    for (; done >= first; --done) Delete(writer, done);
  } catch (const MetaLibError&) {
    IgnoringErrors([&] {
      while (++done <= last) Append(writer, done);
    });
    throw;
  }
}

bool BarStepper::Daily() const { return desktop_.form1().cbxPeriod.Text() == kDailyInterval; }

void BarStepper::ShowPrice(int bar) {
  if (bar < 0) return;
  session_.MarketPrice = session_.BarClose.at(static_cast<std::size_t>(bar));
  session_.NewestShownBar = std::max(session_.NewestShownBar, static_cast<std::int16_t>(bar));
}

void BarStepper::ShowMoment(int bar) {
  ShowPrice(bar);
  if (bar < 0) return;
  session_.CurrentDate = std::to_string(session_.BarDate.at(static_cast<std::size_t>(bar)));
  session_.CurrentTime = std::to_string(session_.BarTime.at(static_cast<std::size_t>(bar)));
}

}  // namespace velumar
