// make_corpus FOLDER: one good example or more for each fuzzer, in FOLDER/directory, price_file,
// texts, ledger, scores and drawings.

#include <fstream>
#include <iostream>
#include <iterator>

#include "charthost/drawings/drawing_file.h"
#include "ledger/ledger.h"
#include "marketdata/directory_editor.h"
#include "marketdata/index_cache.h"
#include "packed_files.h"
#include "support/scratch_folder.h"

namespace velumar {
namespace {

namespace fs = std::filesystem;

std::vector<Bar> Bars(int count, bool intraday) {
  std::vector<Bar> bars;
  for (int i = 0; i < count; ++i) {
    const int date = intraday ? 20070102 : 20070102 + i;
    bars.push_back({date, intraday ? 100000 + i * 1500 : 0, 10, 12, 9, 11, 500, 3});
  }
  return bars;
}

void MakeDirectories(const fs::path& corpus) {
  int number = 0;
  for (const int interval : {-1, 15}) {
    for (const int count : {0, 1, 9}) {
      const ScratchFolder folder;
      IndexCache cache;
      StoreSecurity(folder.Text(), {"ABC", "Abc", interval}, Bars(count, interval != -1), cache);
      StoreSecurity(folder.Text(), {"XYZ", "Xyz Ltd", -1}, Bars(3, false), cache);
      WriteFile(corpus / std::to_string(number++), PackFiles(folder.Path()));
    }
  }
}

void MakeLedger(const fs::path& corpus) {
  const ScratchFolder folder;
  const fs::path file = folder / "Portfolio.mdb";
  LedgerConnection ledger{[](std::string_view date) { return std::string(date); }};
  LedgerOpen(ledger, file.string());
  LedgerBeginRun(ledger, {});
  LedgerClose(ledger);
  fs::copy_file(file, corpus / "empty", fs::copy_options::overwrite_existing);
}

// Without options.
void MakePriceFiles(const fs::path& corpus) {
  for (const auto& entry : fs::directory_iterator(PRICE_FILES)) {
    WriteFile(corpus / entry.path().filename(), std::string(2, '\0') + ReadFile(entry.path()));
  }
  WriteFile(corpus / "format", std::string("\0\x0E%d.%m.%Y %H:%M", 16) +
                                   "Date;Open;High;Low;Close\n02.01.2007 10:00;11,5;12;11;11\n");
}

void MakeTexts(const fs::path& texts) {
  WriteFile(texts / "keys", std::string(1, '\0') + "%(FO)^{TAB}+a{ENTER}{%}~");
  WriteFile(texts / "number", "\1-1,234.5e2");
  WriteFile(texts / "date", "\00131/12/2007dd/MM/yyyy");
}

void MakeScores(const fs::path& corpus) {
  WriteFile(corpus / "answer",
            std::string(1, '\0') + " 1.  2,012.50  Ann  ABC\r\n 2.  9.00  B\r\n");
  WriteFile(
      corpus / "post",
      "\1username=A b&c&score=-12.5&zanno=yes&symbol=ABC&startdate=20050103&enddate=20050630");
}

}  // namespace
// One of each kind, with an anchor after the newest bar.
void MakeDrawings(const fs::path& drawings) {
  DrawingsBySecurity all;
  for (const DrawingRow& row : DrawingCatalogue()) {
    Drawing drawing{.kind = row.kind, .known = 20200103 * std::int64_t{1440}};
    for (std::size_t i = 0; i < row.anchors; ++i) {
      drawing.anchors.push_back({{.date = 20200103, .time = 93000}, 1.5});
    }
    drawing.anchors.back().time.later = 3;
    if (row.kind == DrawingKind::kText) drawing.text = "gap";
    all[{"ABC", "Name"}].push_back(drawing);
  }
  WriteFile(drawings / "all", DrawingsText(all));
}

}  // namespace velumar

int main(int argc, char** argv) {
  if (argc != 2) {
    std::cerr << "usage: make_corpus FOLDER\n";
    return 2;
  }
  const std::filesystem::path corpus = argv[1];
  for (const char* kind : {"directory", "price_file", "texts", "ledger", "scores", "drawings"}) {
    std::filesystem::create_directories(corpus / kind);
  }
  velumar::MakeDirectories(corpus / "directory");
  velumar::MakePriceFiles(corpus / "price_file");
  velumar::MakeTexts(corpus / "texts");
  velumar::MakeLedger(corpus / "ledger");
  velumar::MakeScores(corpus / "scores");
  velumar::MakeDrawings(corpus / "drawings");
  return 0;
}
