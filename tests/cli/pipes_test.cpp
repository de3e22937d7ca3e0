#include <sys/stat.h>

#include <filesystem>

#include "cli/sandbox.h"

namespace velumar {
namespace {

using testing::HasSubstr;

// Nobody writes into these pipes: a program that opens one waits for ever.
void MakePipe(const std::string& file) { ASSERT_EQ(::mkfifo(file.c_str(), 0600), 0); }

TEST(Pipes, AreRefusedAsPrices) {
  Sandbox box;
  MakePipe(box.At("pipe.csv"));
  std::filesystem::create_symlink("/dev/zero", box.At("zero.csv"));
  for (const std::string name : {"pipe.csv", "zero.csv"}) {
    const auto answer = box.Run({"import", box.At(name), box.At("data")});
    EXPECT_EQ(answer.code, 1);
    EXPECT_THAT(answer.err, HasSubstr(name + ": can't be read: it is a pipe or a device"));
  }
}

}  // namespace
}  // namespace velumar
