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

struct Kept {
  std::size_t rows = 0;
  std::size_t details = 0;
  std::string sound;
};

Kept KeptIn(const std::string& file) {
  SqliteDatabase database(file, SqliteDatabase::Mode::kCreate);
  const auto text = [&](const char* sql) {
    SqliteStatement select = database.Prepare(sql);
    select.Step();
    return select.Value(0);
  };
  return {static_cast<std::size_t>(std::get<double>(text("select count(*) from MyPortfolio"))),
          static_cast<std::size_t>(std::get<double>(text("select count(*) from Details"))),
          std::get<std::string>(text("pragma integrity_check"))};
}

// Whatever write or flush fails: what was told as done lies in the ledger, with its detail, and
// what was refused doesn't.
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
      const Kept kept = KeptIn(file);
      const auto done = static_cast<std::size_t>(failed.exit_code);
      // A commit whose flush failed may lie there all the same.
      EXPECT_GE(kept.rows, done) << where;
      EXPECT_LE(kept.rows, done + 1) << where;
      EXPECT_EQ(kept.details, kept.rows) << where;
      EXPECT_EQ(kept.sound, "ok") << where;
    }
  }
  EXPECT_GT(refused, 5);
}

}  // namespace
}  // namespace velumar
