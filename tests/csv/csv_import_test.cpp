#include "csv/csv_import.h"

#include "csv/csv_export.h"
#include "marketdata/index_cache.h"
#include "support/scratch_folder.h"

namespace velumar {
namespace {

// Two files with one cache: the second import must see the first.
TEST(CsvImport, AddsOneFileAfterTheOther) {
  const ScratchFolder folder;
  folder.Write("ONE_D.csv", "date,open,high,low,close\n20200102,1,4,0.5,2\n");
  folder.Write("two.csv", "day;date;time;open;high;low;close\nThu;02.01.2020;9:30;1;1;1;1\n");
  const std::string data = folder.Sub("data");
  IndexCache cache;
  ImportCsv(folder / "ONE_D.csv", data, {}, cache);
  CsvImportOptions options;
  options.interval = 15;
  options.date_format = CsvDateFormat("%d.%m.%Y");
  EXPECT_EQ(ImportCsv(folder / "two.csv", data, options, cache).symbol, "TWO");
  const std::string header = "date,time,open,high,low,close,volume,openinterest\n";
  EXPECT_EQ(CsvOfSeries(data, "ONE", -1, cache), header + "20200102,0,1,4,0.5,2,0,0\n");
  EXPECT_EQ(CsvOfSeries(data, "TWO", 15, cache), header + "20200102,093000,1,1,1,1,0,0\n");
}

}  // namespace
}  // namespace velumar
