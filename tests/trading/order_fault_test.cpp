#include <cstring>

#include "ledger/sqlite_database.h"
#include "support/order_fixture.h"
#include "support/scratch_folder.h"
#include "support/traced_child.h"

namespace velumar {
namespace {

constexpr int kOutOfStep = 100;
constexpr int kOrders = 3;

// A desk on a ledger file, in the process whose disk breaks.
class FaultyDesk : public OrderFixture {
 public:
  explicit FaultyDesk(const std::string& file) {
    LedgerClose(ledger);
    LedgerOpen(ledger, file);
    Account(100, 1, "0", 1000000);
  }
  void TestBody() override {}

  // Places orders; answers how many were done, or kOutOfStep when the book and the results differ.
  int Trade() {
    int done = 0;
    float held = 0;
    for (int i = 0; i < kOrders; ++i) {
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
    return done;
  }
};

double Count(SqliteDatabase& database, const std::string& table) {
  SqliteStatement select = database.Prepare("select count(*) from " + table);
  select.Step();
  return std::get<double>(select.Value(0));
}

// Whatever write or flush fails: what was acknowledged is in the ledger, with its detail, and what
// was refused is not.
TEST(OrderFault, ABrokenDiskKeepsBookAndLedgerInStep) {
  int refused = 0;
  for (int number = 1, reached = 1; reached != 0; ++number) {
    reached = 0;
    for (const auto& [error, stays_broken] : {std::pair(EIO, false), std::pair(ENOSPC, true)}) {
      if (!stays_broken && number % 2 == 0) continue;  // a passing fault is the milder one
      const ScratchFolder scratch;
      const std::string file = scratch.Sub("Portfolio.mdb");
      LedgerConnection made{[](std::string_view date) { return std::string(date); }};
      LedgerOpen(made, file);
      LedgerClose(made);
      const FailedWork failed = FailAt(
          number, error, stays_broken, [&] { return FaultyDesk(file).Trade(); }, Locks::kWork);
      if (!failed.traced) GTEST_SKIP() << "no permission to trace a process";
      if (!failed.reached) continue;
      ++reached;
      const std::string where = "change " + std::to_string(number) + ", " + strerror(error);
      ASSERT_GE(failed.exit_code, 0) << where << ": it died";
      ASSERT_NE(failed.exit_code, kOutOfStep) << where;
      refused += failed.exit_code < kOrders ? 1 : 0;
      SqliteDatabase database(file, SqliteDatabase::Mode::kCreate);
      const double rows = Count(database, "MyPortfolio");
      // A commit whose flush failed may lie there all the same.
      EXPECT_TRUE(rows == failed.exit_code || rows == failed.exit_code + 1) << where << rows;
      EXPECT_EQ(Count(database, "Details"), rows) << where;
      EXPECT_EQ(Count(database, "pragma_integrity_check where integrity_check <> 'ok'"), 0)
          << where;
    }
  }
  EXPECT_GT(refused, 5);
}

// The rows of the last run are in the archive if the next one has begun, and in place if not.
TEST(OrderFault, WithABrokenDiskARunBeginsCompletelyOrNotAtAll) {
  int begun = 0;
  int refused = 0;
  for (int number = 1, reached = 1; reached != 0; ++number) {
    reached = 0;
    for (const auto& [error, stays_broken] : {std::pair(EIO, false), std::pair(ENOSPC, true)}) {
      if (!stays_broken && number % 2 == 0) continue;
      const ScratchFolder scratch;
      const std::string file = scratch.Sub("Portfolio.mdb");
      ASSERT_EQ(FaultyDesk(file).Trade(), kOrders);
      const FailedWork failed = FailAt(
          number, error, stays_broken,
          [&] {
            LedgerConnection ledger{[](std::string_view date) { return std::string(date); }};
            LedgerOpen(ledger, file);
            if (!ledger.CanWrite()) return 0;
            try {
              LedgerBeginRun(ledger, {"/data", "ABC", "D", "20070110", "0", "futures", 1, 2, 3});
              return 1;
            } catch (const LedgerError&) {
              return 0;
            }
          },
          Locks::kWork);
      if (!failed.traced) GTEST_SKIP() << "no permission to trace a process";
      if (!failed.reached) continue;
      ++reached;
      (failed.exit_code == 1 ? begun : refused) += 1;
      const std::string where = "change " + std::to_string(number) + ", " + strerror(error);
      SqliteDatabase database(file, SqliteDatabase::Mode::kCreate);
      const double runs = Count(database, "Runs");
      // A commit whose flush failed may lie there all the same.
      EXPECT_TRUE(failed.exit_code == 1 ? runs == 1 : failed.exit_code == 0) << where;
      EXPECT_EQ(Count(database, "MyPortfolio"), runs == 0 ? kOrders : 0) << where;
      EXPECT_EQ(Count(database, "Archive"), runs == 0 ? 0 : kOrders) << where;
    }
  }
  EXPECT_GT(refused, 3);
  EXPECT_GT(begun, 0);
}

}  // namespace
}  // namespace velumar
