#include "session/working_store.h"

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

#include "base/ignoring.h"
#include "base/text.h"
#include "session/moment.h"
#include "session/stored_bars.h"

namespace velumar {

namespace {

// Where a run starts whose date is after the last bar.
constexpr int kFallbackBar = 250;

void CloseBoth(MetaLibReader& reader, MetaLibWriter& writer) {
  IgnoringErrors([&] { reader.CloseSecurity(); });
  IgnoringErrors([&] { reader.CloseDirectory(); });
  IgnoringErrors([&] { writer.CloseSecurity(); });
  IgnoringErrors([&] { writer.CloseDirectory(); });
}

void StoreArrays(const MetaLibReader& reader, SimSession& session) {
  session.BarDate = reader.GetDates();
  session.BarTime = reader.GetTimes();
  session.BarOpen = reader.GetOpens();
  session.BarHigh = reader.GetHighs();
  session.BarLow = reader.GetLows();
  session.BarClose = reader.GetCloses();
  session.BarVolume = reader.GetVolumes();
  session.BarOpenInt = reader.GetOpenInterests();
}

// Half of the last index, rounded to even.
int Middle(int last_index) { return static_cast<int>(std::nearbyint(last_index / 2.0)); }

void MoveToFallback(MetaLibReader& reader) {
  const int last = static_cast<int>(reader.GetDates().size()) - 1;
  reader.MoveToStart();
  reader.MoveBy(last > kFallbackBar ? kFallbackBar : Middle(last));
}

}  // namespace

std::string LibraryErrorText(const MetaLibError& error) {
  return std::to_string(error.Number()) + "\r" + error.what();
}

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
  MetaLibReader reader(cache_);
  MetaLibWriter writer(cache_);
  try {
    Fill(reader, writer, bars);
    return true;
  } catch (const MetaLibError& error) {
    CloseBoth(reader, writer);
    boxes_.Show(Explained(error), BoxIcon::kNone);
    return false;
  }
}

// Later bars are never written, so a run that dies here leaves none on the disk. The first bar
// always is written: a run needs a current bar.
void WorkingStore::Fill(MetaLibReader& reader, MetaLibWriter& writer, std::optional<int> bars) {
  reader.OpenDirectory(session_.Run.directory);
  OpenStore(writer);
  SelectBoth(reader, writer);
  reader.ReadSeries();
  RequireReplayable(reader);
  const int count = bars ? *bars : BarsBefore(reader, CutStart(reader));
  WriteStoredBars(writer, SeriesView(reader.Bars()), std::max(count, 1));
  reader.CloseSecurity();
  reader.CloseDirectory();
  writer.CloseSecurity();
  writer.CloseDirectory();
}

int WorkingStore::BarsBefore(const MetaLibReader& reader, std::int32_t cut_start) {
  const std::vector<std::int32_t>& dates = reader.GetDates();
  return static_cast<int>(std::lower_bound(dates.begin(), dates.end(), cut_start) - dates.begin());
}

void WorkingStore::OpenStore(MetaLibWriter& writer) {
  if (writer.IsDirectoryInUse(session_.SimDir)) {
    boxes_.Show("File is in used!!", BoxIcon::kNone);
  } else {
    writer.OpenDirectory(session_.SimDir);
  }
}

void WorkingStore::SelectBoth(MetaLibReader& reader, MetaLibWriter& writer) {
  const std::string& symbol = session_.Run.symbol;
  const std::string& interval = session_.Run.interval;
  const auto series = ReplayableInterval(interval);
  if (!series) {
    throw MetaLibError(kNotReplayable, "The interval \"" + interval + "\" of " + symbol +
                                           " can't be replayed: choose " + ReplayIntervalsText() +
                                           ".");
  }
  reader.SelectSeries(symbol, series->daily, series->minutes);
  if (series->daily == 0) RequireKnownMinutes(series->minutes);
  writer.SelectSeries(symbol, series->daily, series->minutes);
}

// A series of unknown minutes is found under any interval.
void WorkingStore::RequireKnownMinutes(int minutes) const {
  const std::string& symbol = session_.Run.symbol;
  if (AnySecurity(session_.Run.directory, [&](const std::string& listed, int interval) {
        return listed == symbol && interval == minutes;
      })) {
    return;
  }
  throw MetaLibError(kNotReplayable, "The series " + symbol +
                                         " can't be replayed, because the minutes of its bars "
                                         "are unknown. Import it again with an interval.");
}

bool WorkingStore::AnySecurity(
    std::string_view directory,
    const std::function<bool(const std::string& symbol, int interval)>& wanted) const {
  MetaLibReader reader(cache_);
  reader.OpenDirectory(directory);
  while (reader.NextSecurity() >= 1) {
    reader.ReadSecurityHeader();
    if (wanted(reader.SecuritySymbol(), reader.SecurityInterval())) return true;
  }
  return false;
}

// Checked before anything is written, so that no chart shows what can't be stepped through.
void WorkingStore::RequireReplayable(const MetaLibReader& reader) const {
  RequireLength(reader);
  const auto moment = [&reader](std::size_t bar) {
    return std::pair(reader.GetDates()[bar], reader.GetTimes()[bar]);
  };
  for (std::size_t i = 1; i < reader.GetDates().size(); ++i) {
    if (moment(i - 1) < moment(i)) continue;
    throw MetaLibError(kNotReplayable, SeriesName() + " can't be replayed: at " +
                                           std::to_string(reader.GetDates()[i]) +
                                           " its bars are out of order, and they have no times.");
  }
}

void WorkingStore::RequireLength(const MetaLibReader& reader) const {
  const std::size_t bars = reader.GetDates().size();
  if (bars > 0 && bars <= kLongestSeries) return;
  const std::string limit = "at most " + std::to_string(kLongestSeries) + " bars can be replayed";
  throw MetaLibError(kNotReplayable,
                     SeriesName() + " holds " +
                         (bars == 0 ? "no bars (0; " + limit + ")."
                                    : std::to_string(bars) + " bars; " + limit + "."));
}

std::string WorkingStore::SeriesName() const {
  return "The series " + session_.Run.symbol + " at interval " + session_.Run.interval;
}

std::int32_t WorkingStore::CutStart(MetaLibReader& reader) const {
  const std::string start_text = std::to_string(session_.Run.start_day);
  try {
    reader.SeekDate(start_text, 0);
  } catch (const MetaLibError& error) {
    if (error.Number() != MetaLibError::kDateNotFound) throw;
    MoveToFallback(reader);
  }
  reader.ReadBar();
  return reader.BarDateAtCursor();
}

std::string WorkingStore::Explained(const MetaLibError& error) const {
  std::string text = LibraryErrorText(error);
  if (error.Number() == MetaLibError::kSeriesNotFound && StoredInLowerCase()) {
    text += "\rThe directory holds " + session_.Run.symbol +
            " in lower case; only symbols in upper case can be replayed.";
  }
  return text;
}

bool WorkingStore::StoredInLowerCase() const {
  bool found = false;
  const std::string& wanted = session_.Run.symbol;
  IgnoringErrors([&] {
    found = AnySecurity(session_.Run.directory, [&](const std::string& listed, int) {
      return listed != wanted && UpperCased(listed) == wanted;
    });
  });
  return found;
}

void WorkingStore::LoadSeries() {
  session_.BarIndex = LoadBars(session_.SimDir);
  session_.LastBarIndex = LoadBars(session_.Run.directory);
  session_.BarChecks = BarChecks(SeriesView(session_));
  session_.FirstShownBar = session_.BarIndex;
  session_.NewestShownBar = session_.BarIndex;
  const auto bar = static_cast<std::size_t>(session_.BarIndex);
  session_.StartDate = std::to_string(session_.BarDate.at(bar));
  session_.StartTime = std::to_string(session_.BarTime.at(bar));
}

BarArrays WorkingStore::ReadSeries(const RunSeries& wanted) const {
  const auto series = ReplayableInterval(wanted.interval);
  if (!series) {
    throw MetaLibError(MetaLibError::kSeriesNotFound,
                       "There is no interval \"" + wanted.interval + "\"");
  }
  MetaLibReader reader(cache_);
  reader.OpenDirectory(wanted.directory);
  reader.SelectSeries(wanted.symbol, series->daily, series->minutes);
  reader.ReadSeries();
  return reader.Bars();
}

// SymbolInterval is that of the last security looked at.
std::int16_t WorkingStore::LoadBars(std::string_view directory) {
  const std::string& symbol = session_.Run.symbol;
  const std::string& interval = session_.Run.interval;
  const auto series = ReplayableInterval(interval);
  const bool found = AnySecurity(directory, [&](const std::string& listed, int its_interval) {
    session_.SymbolInterval = std::to_string(its_interval);
    return session_.SymbolInterval == IntervalToMatch(interval) && listed == symbol;
  });
  if (!series || !found) {
    throw MetaLibError(MetaLibError::kSeriesNotFound, "There is no series \"" + symbol +
                                                          "\" at interval " + interval + " in \"" +
                                                          std::string(directory) + "\"");
  }
  MetaLibReader reader(cache_);
  reader.OpenDirectory(directory);
  reader.SelectSeries(symbol, series->daily, series->minutes);
  reader.ReadSeries();
  RequireLength(reader);
  StoreArrays(reader, session_);
  return static_cast<std::int16_t>(session_.LastArrayIndex());
}

}  // namespace velumar
