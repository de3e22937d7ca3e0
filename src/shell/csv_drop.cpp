#include "shell/csv_drop.h"

#include <algorithm>
#include <exception>
#include <filesystem>
#include <iterator>

#include "base/paths.h"
#include "base/text.h"
#include "marketdata/csv_import.h"

namespace velumar {

namespace {

bool IsCsv(const std::string& file) {
  return UpperCased(PathText(NativePath(file).extension())) == ".CSV";
}

std::string Files(std::size_t count) {
  return std::to_string(count) + (count == 1 ? " file" : " files");
}

}  // namespace

void CsvDrop::Import(const std::vector<std::string>& files) {
  std::vector<std::string> prices;
  std::copy_if(files.begin(), files.end(), std::back_inserter(prices), IsCsv);
  if (prices.empty()) {
    platform_.boxes.Show("Only price files come in this way: their names end in \".csv\".",
                         BoxIcon::kInformation);
    return;
  }
  if (!Agreed(prices.size())) return;
  std::string first_symbol;
  std::string problems;
  std::size_t came_in = 0;
  for (const std::string& file : prices) {
    try {
      const CsvImportReport report = ImportCsv(NativePath(file), session_.DataDir, {}, cache_);
      if (came_in++ == 0) first_symbol = report.symbol;
    } catch (const std::exception& error) {
      problems += "\n" + std::string(error.what());
    }
  }
  if (!problems.empty()) {
    platform_.boxes.Show(
        std::to_string(came_in) + " of " + Files(prices.size()) + " came in." + problems,
        BoxIcon::kExclamation);
  }
  if (came_in == 0) return;
  catalogue_.BuildSymbolList();
  Choose(first_symbol);
}

// Asked once for all files, with the directory's name: a security of the same symbol and interval
// is replaced there.
bool CsvDrop::Agreed(std::size_t files) {
  const std::string question =
      "Import into the market data directory\n" + session_.DataDir + "\n\n" + Files(files) +
      " will be added. A security of the same symbol and interval is replaced.";
  return platform_.boxes.Ask(question, {"Import", "Cancel"}) == 0;
}

void CsvDrop::Choose(const std::string& symbol) {
  const ComboBox& list = desktop_.form1().Combo1;
  const auto& rows = list.Rows();
  const auto row = std::find_if(rows.begin(), rows.end(),
                                [&](const ComboBox::Row& one) { return one.text == symbol; });
  if (row != rows.end()) desktop_.form1().Combo1.SetIndex(static_cast<int>(row - rows.begin()));
}

}  // namespace velumar
