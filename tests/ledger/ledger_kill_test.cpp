#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <random>

#include "ledger/ledger.h"
#include "support/scratch_folder.h"

namespace velumar {
namespace {

std::vector<LedgerValue> NumberedRow(int number) {
  std::vector<LedgerValue> row(22, LedgerValue(static_cast<double>(number)));
  row[1] = "ABC";
  row[3] = "2007-01-25";
  row[4] = "16:30:00";
  row[6] = "Long";
  return row;
}

std::string AsItIs(std::string_view date) { return std::string(date); }

// Places orders and tells each number through the pipe once it was acknowledged.
[[noreturn]] void PlaceOrders(const std::string& file, int from, int pipe_end) {
  LedgerConnection ledger(AsItIs);
  LedgerOpen(ledger, file);
  for (int number = from; number < from + 200; ++number) {
    LedgerInsertOrder(ledger, NumberedRow(number), {});
    if (write(pipe_end, &number, sizeof number) != sizeof number) _exit(1);
  }
  _exit(0);
}

TEST(LedgerKill, EveryAcknowledgedOrderIsThereAndNoHalfRow) {
  const ScratchFolder scratch;
  const std::string file = scratch.Sub("Portfolio.mdb");
  std::mt19937 random(23);
  int acknowledged = -1;
  while (acknowledged < 200) {
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    const pid_t child = fork();
    if (child == 0) PlaceOrders(file, acknowledged + 1, ends[1]);
    close(ends[1]);
    usleep(static_cast<useconds_t>(2000 + random() % 40000));
    kill(child, SIGKILL);
    int status = 0;
    waitpid(child, &status, 0);
    int number = 0;
    while (read(ends[0], &number, sizeof number) == sizeof number) acknowledged = number;
    close(ends[0]);

    LedgerConnection ledger(AsItIs);
    LedgerOpen(ledger, file);
    ASSERT_TRUE(ledger.CanWrite()) << ledger.WhyNot();
    const LedgerRecordset rows = LedgerQuery(ledger, "select Profile, Portfolio From MyPortfolio");
    // One more may have been kept than was told.
    ASSERT_GE(static_cast<int>(rows.rows.size()), acknowledged + 1);
    ASSERT_LE(static_cast<int>(rows.rows.size()), acknowledged + 2);
    for (std::size_t i = 0; i < rows.rows.size(); ++i) {
      ASSERT_EQ(rows.rows[i][0], LedgerValue(static_cast<double>(i)));
      ASSERT_EQ(rows.rows[i][1], LedgerValue(static_cast<double>(i)));
    }
    acknowledged = static_cast<int>(rows.rows.size()) - 1;
  }
}

}  // namespace
}  // namespace velumar
