#include "ledger/sqlite_database.h"
#include "session/moment.h"
#include "support/order_fixture.h"
#include "support/scratch_folder.h"
#include "support/traced_child.h"

namespace velumar {
namespace {

constexpr int kOutOfStep = 100;
constexpr int kOrders = 3;

// A desk on a ledger file, in the process whose disk breaks.
struct FaultyDesk : OrderFixture {
  explicit FaultyDesk(const std::string& file) {
    LedgerClose(ledger);
    LedgerOpen(ledger, file);
    Account(100, 1, "0", 1000000);
    session.SessionNumber = 1;
  }
  void TestBody() override {}

  // Returns how many orders were done, or kOutOfStep if the book does not match their results.
  int Trade(int orders) {
    int done = 0;
    float held = 0;
    for (int i = 0; i < orders; ++i) {
      const bool entry = i % 3 != 2;
      const Book before = session;
      const OrderResult result = Order(entry ? &OrderDesk::Long : &OrderDesk::OffsetLong, "2");
      if (result == OrderResult::kDone) {
        ++done;
        held += entry ? 2.0F : -2.0F;
      } else if (session.UsedMargin != before.UsedMargin || session.Balance != before.Balance) {
        return kOutOfStep;
      }
      if (session.LAccum != held) return kOutOfStep;
    }
    return std::ssize(charts.pictures) == done ? done : kOutOfStep;
  }
};

double Count(SqliteDatabase& database, const std::string& table) {
  SqliteStatement select = database.Prepare("select count(*) from " + table);
  select.Step();
  return std::get<double>(select.Value(0));
}

// What the session's moment says is held; 0 without one.
float HeldAtMoment(SqliteDatabase& database) {
  const LedgerValue book = database.FirstValue("SELECT Book FROM SessionMoments WHERE Session = 1");
  const auto* const text = std::get_if<std::string>(&book);
  return text == nullptr ? 0 : BookFromText(*text).LAccum;
}

// Checks what some work leaves in a ledger when the disk breaks. Half of the passing faults are
// skipped, since they are the milder ones.
bool BreakLedger(const DiskFault& fault, const std::function<int(const std::string& file)>& work,
                 bool traded_before,
                 const std::function<void(int exit_code, SqliteDatabase& left)>& check) {
  if (!fault.stays_broken && fault.number % 2 == 0) return false;
  const ScratchFolder scratch(MemoryFolder());
  const std::string file = scratch.Sub("Portfolio.mdb");
  EXPECT_EQ(FaultyDesk(file).Trade(traded_before ? kOrders : 0), traded_before ? kOrders : 0);
  const FailedWork failed = FailAt(
      fault.number, fault.error, fault.stays_broken, [&] { return work(file); }, Locks::kWork);
  if (!failed.reached) return false;
  EXPECT_GE(failed.exit_code, 0) << "it died";
  SqliteDatabase database(file, SqliteDatabase::Mode::kCreate);
  check(failed.exit_code, database);
  EXPECT_EQ(Count(database, "pragma_integrity_check where integrity_check <> 'ok'"), 0);
  return true;
}

// Whatever write or flush fails: what was acknowledged is in the ledger, with its detail, the trade
// that it closed and the moment to resume at, and what was refused is not.
TEST(OrderFault, ABrokenDiskKeepsBookAndLedgerInStep) {
  if (!CanTrace()) GTEST_SKIP() << "no permission to trace a process";
  int refused = 0;
  const auto trade = [](const std::string& file) { return FaultyDesk(file).Trade(kOrders); };
  ForEachFault([&](const DiskFault& fault) {
    return BreakLedger(fault, trade, false, [&](int done, SqliteDatabase& left) {
      EXPECT_NE(done, kOutOfStep);
      refused += done < kOrders ? 1 : 0;
      const double rows = Count(left, "MyPortfolio");
      // A commit whose flush failed may be on the disk all the same.
      EXPECT_TRUE(rows == done || rows == done + 1) << rows;
      EXPECT_EQ(Count(left, "Details"), rows);
      // Each order is of two contracts.
      const double offsets = Count(left, "MyPortfolio WHERE Position LIKE 'Offset%'");
      EXPECT_EQ(Count(left, "Trades"), offsets);
      EXPECT_EQ(HeldAtMoment(left), 2 * (rows - 2 * offsets));
    });
  });
  EXPECT_GT(refused, 5);
}

// The rows of the last run are in the archive if the next one has begun, and in place if not.
TEST(OrderFault, WithABrokenDiskARunBeginsCompletelyOrNotAtAll) {
  if (!CanTrace()) GTEST_SKIP() << "no permission to trace a process";
  int begun = 0;
  int refused = 0;
  const auto begin_run = [](const std::string& file) {
    LedgerConnection ledger{[](std::string_view date) { return std::string(date); }};
    LedgerOpen(ledger, file);
    if (!ledger.CanWrite()) return 0;
    try {
      LedgerBeginRun(ledger, {"/data", "ABC", "D", "20070110", "0", "futures", 1, 2, 3});
      return 1;
    } catch (const LedgerError&) {
      return 0;
    }
  };
  ForEachFault([&](const DiskFault& fault) {
    return BreakLedger(fault, begin_run, true, [&](int exit_code, SqliteDatabase& left) {
      (exit_code == 1 ? begun : refused) += 1;
      const double runs = Count(left, "Runs");
      // A commit whose flush failed may be on the disk all the same.
      EXPECT_TRUE(exit_code == 1 ? runs == 1 : exit_code == 0);
      EXPECT_EQ(Count(left, "MyPortfolio"), runs == 0 ? kOrders : 0);
      EXPECT_EQ(Count(left, "Archive"), runs == 0 ? 0 : kOrders);
    });
  });
  EXPECT_GT(refused, 3);
  EXPECT_GT(begun, 0);
}

}  // namespace
}  // namespace velumar
