#include "session/working_store.h"

#include <algorithm>
#include <utility>

#include "base/ignoring.h"
#include "base/text.h"
#include "marketdata/directory_editor.h"
#include "marketdata/interval.h"
#include "marketdata/metalib_error.h"
#include "marketdata/metalib_reader.h"
#include "session/failure_box.h"
#include "session/moment.h"
#include "session/stored_bars.h"

namespace velumar {

namespace {

SeriesArguments ArgumentsOf(const RunSeries& run) {
  return ReplayableInterval(run.interval).value_or(SeriesArguments());
}

}  // namespace

bool WorkingStore::Claim() {
  return Reported([this] {
    // A refused claim must not release the store of the last run, whose feed may still go on.
    StoreFolder::Require(session_.SimDir, session_.DataDir);
    folder_.reset();
    folder_.emplace(session_.SimDir, session_.DataDir);
  });
}

bool WorkingStore::Refill() {
  session_.DataDir = WithClosingBackslash(session_.DataDir);
  session_.SimDir = WithClosingBackslash(session_.SimDir);
  return Reported([this] {
    folder_->Clear();
    if (const auto& key = source_.Key()) {
      folder_->ClearChartFiles();
      StoreSecurity(session_.SimDir,
                    {session_.Run.symbol, key->ShownName(), ArgumentsOf(session_.Run).minutes}, {},
                    cache_);
      return;
    }
    view_.SetStatusLine("Copy MASTER ... ");
    folder_->CopyIndexes();
    view_.SetStatusLine("Copy MSSmart ... ");
    folder_->CopyChartFiles();
  });
}

bool WorkingStore::Reported(const std::function<void()>& step) {
  try {
    step();
    return true;
  } catch (const MetaLibError& error) {
    boxes_.Show(LibraryErrorText(error), BoxIcon::kExclamation);
  } catch (const StoreError& error) {
    boxes_.Show(error.what(), BoxIcon::kExclamation);
  } catch (const std::exception& error) {
    boxes_.Show("The working store could not be filled.\n" + std::string(error.what()),
                BoxIcon::kExclamation);
  }
  return false;
}

bool WorkingStore::Prepare(std::optional<int> bars) {
  MetaLibWriter writer(cache_);
  try {
    Fill(writer, bars);
    return true;
  } catch (const MetaLibError& error) {
    IgnoringErrors([&] { writer.CloseSecurity(); });
    IgnoringErrors([&] { writer.CloseDirectory(); });
    boxes_.Show(LibraryErrorText(error), BoxIcon::kNone);
    return false;
  }
}

// Later bars are never written, so a run that dies here leaves none on the disk. The first bar
// always is written: a run needs a current bar.
void WorkingStore::Fill(MetaLibWriter& writer, std::optional<int> bars) {
  const ShownSeries series = source_.Read();
  OpenStore(writer);
  const SeriesArguments arguments = ArgumentsOf(session_.Run);
  writer.SelectSeries(session_.Run.symbol, arguments.daily, arguments.minutes);
  WriteStoredBars(writer, SeriesView(series.bars), std::max(bars.value_or(series.start), 1));
  writer.CloseSecurity();
  writer.CloseDirectory();
}

void WorkingStore::OpenStore(MetaLibWriter& writer) {
  if (writer.IsDirectoryInUse(session_.SimDir)) {
    boxes_.Show("File is in used!!", BoxIcon::kNone);
  } else {
    writer.OpenDirectory(session_.SimDir);
  }
}

void WorkingStore::LoadSeries(int bars_to_play) {
  const int stored = StoredBars();
  session_.BarIndex = static_cast<std::int16_t>(stored - 1);
  BarArrays bars = source_.Read().bars;
  if (bars_to_play > 0) bars.Truncate(static_cast<std::size_t>(stored + bars_to_play));
  session_.BarDate = std::move(bars.dates);
  session_.BarTime = std::move(bars.times);
  session_.BarOpen = std::move(bars.opens);
  session_.BarHigh = std::move(bars.highs);
  session_.BarLow = std::move(bars.lows);
  session_.BarClose = std::move(bars.closes);
  session_.BarVolume = std::move(bars.volumes);
  session_.BarOpenInt = std::move(bars.open_interests);
  session_.BarChecks = BarChecks(SeriesView(session_));
  session_.SymbolInterval = IntervalToMatch(session_.Run.interval);
  session_.LastBarIndex = static_cast<std::int16_t>(session_.LastArrayIndex());
  session_.FirstShownBar = session_.BarIndex;
  session_.NewestShownBar = session_.BarIndex;
  const auto bar = static_cast<std::size_t>(session_.BarIndex);
  session_.StartDate = std::to_string(session_.BarDate.at(bar));
  session_.StartTime = std::to_string(session_.BarTime.at(bar));
}

int WorkingStore::StoredBars() const {
  MetaLibReader reader(cache_);
  reader.OpenDirectory(session_.SimDir);
  const SeriesArguments arguments = ArgumentsOf(session_.Run);
  reader.SelectSeries(session_.Run.symbol, arguments.daily, arguments.minutes);
  reader.ReadSeries();
  return static_cast<int>(reader.GetDates().size());
}

}  // namespace velumar
