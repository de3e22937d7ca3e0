#include "shell/symbol_catalogue.h"

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <utility>

#include "base/paths.h"
#include "base/scoped_counter.h"
#include "base/text.h"
#include "marketdata/interval.h"
#include "marketdata/metalib_error.h"
#include "marketdata/metalib_reader.h"

namespace velumar {

namespace {

constexpr std::string_view kNoDataText =
    "Directory not contain a  Meta Stock's Data. Click OK to select a new one.";

constexpr std::string_view kPickDirectoryPrompt =
    "Select a directory that contains MetaStock files!";

constexpr int kCancelsUntilWayOut = 2;

// Often enough that the windows stay responsive.
constexpr std::size_t kSecuritiesBetweenEvents = 100;

// Shown next to the symbol, which may have a series at each interval.
std::string NoteOf(const std::string& name, const std::string& interval) {
  return name + (interval == kDailyInterval ? ", daily" : ", " + interval + " min");
}

}  // namespace

void SymbolCatalogue::BuildSymbolList() {
  const int build = ++builds_;
  const ScopedCounter running(building_);
  int cancels = 0;
  desktop_.form1().Combo1.Clear();
  while (StillWanted(build)) {
    try {
      ListSecurities(build);
      return;
    } catch (const MetaLibError& error) {
      if (error.Number() != MetaLibError::kNoData) return;
    }
    if (OfferImport()) return;
    platform_.boxes.Show(kNoDataText, BoxIcon::kInformation);
    cancels = PickDataDirectory() ? 0 : cancels + 1;
    if (cancels == kCancelsUntilWayOut) {
      cancels = 0;
      OfferWayOut();
    }
  }
}

void SymbolCatalogue::OfferWayOut() {
  const std::size_t answer =
      platform_.boxes.Ask("Velumar needs a directory with market data. What do you want to do?",
                          {"Quit", "Use the samples", "Choose a directory"});
  if (answer == 0) {
    if (const auto close = desktop_.form1().on_close) close();
  } else if (answer == 1) {
    SetDataDirectory(platform_.default_data_dir);
  }
}

bool SymbolCatalogue::StillWanted(int build) const {
  return build == builds_ && desktop_.Untouched().form1.Loaded();
}

void SymbolCatalogue::ListSecurities(int build) {
  MetaLibReader reader(cache_);
  reader.OpenDirectory(session_.DataDir);
  const auto count = static_cast<std::size_t>(reader.SecurityCount());
  std::vector<std::string> intervals(count + 1);
  std::vector<ComboBox::Row> rows;
  rows.reserve(count);
  const auto take_over = [&] {
    session_.PeriodBySymbol = std::move(intervals);
    desktop_.form1().Combo1.SetRows(std::move(rows));
  };
  try {
    for (std::size_t i = 0; i < count && reader.NextSecurity() >= 1; ++i) {
      reader.ReadSecurityHeader();
      intervals[i] = IntervalText(reader.SecurityInterval());
      rows.push_back({reader.SecuritySymbol(), static_cast<int>(i),
                      NoteOf(reader.SecurityName(), intervals[i])});
      reader.CloseSecurity();
      if ((i + 1) % kSecuritiesBetweenEvents != 0) continue;
      platform_.events.ProcessPending();
      if (!StillWanted(build)) return;
    }
  } catch (const MetaLibError&) {
    take_over();
    throw;
  }
  take_over();
  if (count > 0 && !desktop_.form1().Combo1.Rows().empty()) desktop_.form1().Combo1.SetIndex(0);
  reader.CloseDirectory();
}

bool SymbolCatalogue::PickDataDirectory() {
  const std::string chosen = platform_.folders.BrowseForFolder(kPickDirectoryPrompt);
  if (chosen.empty()) return false;
  SetDataDirectory(chosen);
  return true;
}

void SymbolCatalogue::SetDataDirectory(std::string_view directory) {
  TextBox& box = desktop_.form1().Text3;
  box.SetText(directory);
  session_.DataDir = box.Text();
  platform_.settings.Save("LastPath", box.Text());
}

void SymbolCatalogue::SymbolChosen() {
  const ComboBox& list = desktop_.form1().Combo1;
  session_.Symbol = NormalisedSymbol(list.Text());
  if (!ListsSecurities() || list.Index() < 0) return;
  const int security = list.Rows().at(static_cast<std::size_t>(list.Index())).data;
  SetPeriod(session_.PeriodBySymbol.at(static_cast<std::size_t>(security)));
}

void SymbolCatalogue::SymbolTyped() {
  const ComboBox& list = desktop_.form1().Combo1;
  session_.Symbol = NormalisedSymbol(list.Text());
  if (!ListsSecurities()) return;
  for (const ComboBox::Row& row : list.Rows()) {
    if (row.text != session_.Symbol) continue;
    session_.SymbolInterval = session_.PeriodBySymbol.at(static_cast<std::size_t>(row.data));
    SetPeriod(session_.SymbolInterval);
  }
}

void SymbolCatalogue::SetPeriod(std::string_view interval) {
  ComboBox& period = desktop_.form1().cbxPeriod;
  period.Clear();
  period.SetText(interval);
}

void SymbolCatalogue::OfferIntervals() {
  ComboBox& period = desktop_.form1().cbxPeriod;
  std::vector<ComboBox::Row> rows;
  for (const int interval : kReplayIntervals) {
    const std::string text = IntervalText(interval);
    if (std::ranges::find(session_.PeriodBySymbol, text) != session_.PeriodBySymbol.end()) {
      rows.push_back({text});
    }
  }
  const std::string chosen = period.Text();
  period.SetRows(std::move(rows));
  period.SetText(chosen);
}

bool SymbolCatalogue::OfferImport() {
  const std::filesystem::path folder = NativePath(session_.DataDir);
  std::error_code missing;
  if (!std::filesystem::is_directory(folder, missing) || !HoldsPrices(folder)) return false;
  import_.Offer({session_.DataDir}, session_.DataDir);
  return true;
}

void SymbolCatalogue::ListAndChoose(std::string_view symbol, int interval) {
  BuildSymbolList();
  ComboBox& list = desktop_.form1().Combo1;
  const auto& rows = list.Rows();
  const auto row = std::ranges::find_if(rows, [&](const ComboBox::Row& one) {
    const std::string& its = session_.PeriodBySymbol.at(static_cast<std::size_t>(one.data));
    return one.text == symbol && IntervalToMatch(its) == std::to_string(interval);
  });
  if (row != rows.end()) list.SetIndex(static_cast<int>(row - rows.begin()));
}

}  // namespace velumar
