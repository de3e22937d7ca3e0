#include <sys/stat.h>

#include <filesystem>

#include "ledger/ledger.h"
#include "support/matchers.h"
#include "support/scratch_folder.h"

namespace velumar {
namespace {

// A pipe that nobody writes to, or an endless device, in place of a file.
TEST(OddFiles, NeverBlock) {
  for (const std::string suffix : {"", "-wal", "-shm", "-journal", "-owner"}) {
    for (const std::string device : {"", "/dev/zero"}) {
      const ScratchFolder scratch;
      const std::string file = scratch.Sub("l.mdb");
      LedgerConnection ledger{[](std::string_view date) { return std::string(date); }};
      LedgerOpen(ledger, file);
      LedgerClose(ledger);
      std::filesystem::remove(file + suffix);
      if (device.empty()) {
        ASSERT_EQ(mkfifo((file + suffix).c_str(), 0600), 0);
      } else {
        std::filesystem::create_symlink(device, file + suffix);
      }
      LedgerOpen(ledger, file);
      EXPECT_FALSE(ledger.CanWrite()) << suffix;
      EXPECT_THAT(ledger.WhyNot(), HasSubstr("l.mdb" + suffix));
    }
  }
}

}  // namespace
}  // namespace velumar
