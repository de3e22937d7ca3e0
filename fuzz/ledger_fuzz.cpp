// A ledger file of any bytes is opened or refused with an error, and so are its rows.

#include "ledger/ledger.h"
#include "ledger/sqlite_database.h"
#include "packed_files.h"
#include "support/scratch_folder.h"

namespace velumar {
namespace {

void Read(LedgerConnection& ledger) {
  try {
    LedgerQuery(ledger, "select * From MyPortfolio");
    LedgerQuery(ledger,
                "select actdate, acttime, Portfolio From MyPortfolio order by actdate desc, "
                "acttime desc ");
    LedgerQuery(ledger,
                "select format(actdate & ' ' & acttime ,'dd-mmm-yy HH:MM')  as ActionDate, "
                "Portfolio  From MyPortfolio  where balancepoint <> 0 order by actdate ");
  } catch (const LedgerError&) {
  }
}

void Write(LedgerConnection& ledger) {
  try {
    LedgerBeginRun(ledger, {});
    LedgerInsert(ledger, kProfileTable, {"Profile Name"}, {"A"});
  } catch (const LedgerError&) {
  }
}

}  // namespace
}  // namespace velumar

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
  using namespace velumar;
  const ScratchFolder folder;
  const std::filesystem::path file = folder / "Portfolio.mdb";
  WriteFile(file, AsText(data, size));
  LedgerConnection ledger{[](std::string_view date) { return std::string(date); }};
  try {
    LedgerOpenToRead(ledger, file.string());
    Read(ledger);
  } catch (const LedgerError&) {
  }
  LedgerClose(ledger);
  LedgerOpen(ledger, file.string());
  Read(ledger);
  Write(ledger);
  return 0;
}
