#include "shell/csv_drop.h"

#include <algorithm>
#include <exception>
#include <filesystem>
#include <iterator>
#include <system_error>

#include "base/paths.h"
#include "base/text.h"
#include "marketdata/interval.h"

namespace velumar {

namespace {

bool IsCsv(const std::string& file) {
  return UpperCased(PathText(NativePath(file).extension())) == ".CSV";
}

// Sorted by name; none if the directory can't be read.
std::vector<std::string> PriceFilesIn(const std::string& directory) {
  std::vector<std::string> prices;
  std::error_code unreadable;
  for (const auto& entry : std::filesystem::directory_iterator(NativePath(directory), unreadable)) {
    const std::string file = PathText(entry.path());
    if (IsCsv(file) && entry.is_regular_file(unreadable)) prices.push_back(file);
  }
  std::sort(prices.begin(), prices.end());
  return prices;
}

// With the system's separators.
std::string Shown(const std::string& directory) {
  return PathText(NativePath(directory).make_preferred());
}

std::string Files(std::size_t count) {
  return std::to_string(count) + (count == 1 ? " file" : " files");
}

}  // namespace

void CsvDrop::Import(const std::vector<std::string>& files) {
  std::vector<std::string> prices;
  std::copy_if(files.begin(), files.end(), std::back_inserter(prices), IsCsv);
  if (prices.empty()) {
    platform_.boxes.Show("Only .csv files can be imported.", BoxIcon::kInformation);
    return;
  }
  if (!Agreed(prices.size())) return;
  const Imported imported = ImportAll(prices);
  if (imported.files == 0) return;
  catalogue_.BuildSymbolList();
  Choose(imported.first);
}

bool CsvDrop::OfferDirectory() {
  const std::vector<std::string> prices = PriceFilesIn(session_.DataDir);
  if (prices.empty()) return false;
  const std::string question = Shown(session_.DataDir) + "\nholds no market data yet, but " +
                               Files(prices.size()) +
                               " with prices. Velumar can import them there.";
  if (platform_.boxes.Ask(question, {"Import", "Choose another directory"}) != 0) return false;
  return ImportAll(prices).files > 0;
}

CsvDrop::Imported CsvDrop::ImportAll(const std::vector<std::string>& prices) {
  Imported imported;
  std::string problems;
  for (const std::string& file : prices) {
    try {
      const CsvImportReport report = ImportCsv(NativePath(file), session_.DataDir, {}, cache_);
      if (imported.files++ == 0) imported.first = report;
    } catch (const std::exception& error) {
      problems += "\n" + std::string(error.what());
    }
  }
  if (!problems.empty()) {
    platform_.boxes.Show("Imported " + std::to_string(imported.files) + " of " +
                             Files(prices.size()) + "." + problems,
                         BoxIcon::kExclamation);
  }
  return imported;
}

// Asks once for all files, since securities of the same symbol and interval are replaced.
bool CsvDrop::Agreed(std::size_t files) {
  const std::string question =
      "Import into the market data directory\n" + Shown(session_.DataDir) + "\n\n" + Files(files) +
      " will be imported. A security of the same symbol and interval is replaced.";
  return platform_.boxes.Ask(question, {"Import", "Cancel"}) == 0;
}

void CsvDrop::Choose(const CsvImportReport& series) {
  ComboBox& list = desktop_.form1().Combo1;
  const auto& rows = list.Rows();
  const auto row = std::ranges::find_if(rows, [&](const ComboBox::Row& one) {
    const std::string& interval = session_.PeriodBySymbol.at(static_cast<std::size_t>(one.data));
    return one.text == series.symbol &&
           IntervalToMatch(interval) == std::to_string(series.interval);
  });
  if (row != rows.end()) list.SetIndex(static_cast<int>(row - rows.begin()));
}

}  // namespace velumar
