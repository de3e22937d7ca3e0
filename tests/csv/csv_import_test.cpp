#include "csv/csv_import.h"

#include "csv/csv_export.h"
#include "marketdata/index_cache.h"
#include "support/scratch_folder.h"

namespace velumar {
namespace {

TEST(CsvImport, ReadsDatesAsItIsTold) {
  const ScratchFolder folder;
  folder.Write("two.csv", "day;date;time;open;high;low;close\nThu;02.01.2020;9:30;1;1;1;1\n");
  CsvImportOptions options;
  options.interval = 15;
  options.date_format = CsvDateFormat("%d.%m.%Y");
  IndexCache cache;
  ImportCsv(folder / "two.csv", folder.Sub("data"), options, cache);
  EXPECT_EQ(CsvOfSeries(folder.Sub("data"), "TWO", 15, cache),
            "date,time,open,high,low,close,volume,openinterest\n20200102,093000,1,1,1,1,0,0\n");
}

}  // namespace
}  // namespace velumar
