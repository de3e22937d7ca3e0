#include <gtest/gtest.h>

#include <array>
#include <optional>

#include "marketdata/data_file.h"
#include "marketdata/directory_lock.h"
#include "marketdata/market_files.h"

namespace velumar {

namespace {

ByteView Bytes(std::string_view text) { return std::as_bytes(std::span(text)); }

std::string ReadThrough(const RawFile& file) {
  std::array<std::byte, 64> bytes{};
  const std::size_t got = file.ReadAt(0, bytes);
  return {reinterpret_cast<const char*>(bytes.data()), got};
}

// The chart program may have a file open at the moment in which a step replaces it.
TEST(FileReplacement, TakesThePlaceOfAFileThatAReaderHasOpen) {
  const ScratchFolder directory;
  directory.Write("F1.DAT", "the old bars");
  std::optional<RawFile> reader(std::in_place, directory / "F1.DAT", RawFile::Mode::kRead);
  const auto before = StampOf(directory / "F1.DAT");
  for (const std::string_view bars : {"new bars", "newer bars, and more of them"}) {
    FileReplacement fresh = ReplacementOf(directory / "F1.DAT");
    fresh.Write(Bytes(bars));
    EXPECT_NE(directory.Read("F1.DAT"), bars);
    const RawFile written = fresh.Commit();
    EXPECT_EQ(written.Path(), directory / "F1.DAT");
    EXPECT_EQ(directory.Read("F1.DAT"), bars);
    EXPECT_EQ(ReadThrough(written), bars);
  }
  EXPECT_EQ(ReadThrough(*reader), "the old bars");
  EXPECT_NE(StampOf(directory / "F1.DAT"), before);
  reader.reset();
  EXPECT_EQ(directory.Names(), std::vector<std::string>{"F1.DAT"}) << "the old one is gone";
  { const FileReplacement given_up = ReplacementOf(directory / "F1.DAT"); }
  EXPECT_EQ(directory.Names(), std::vector<std::string>{"F1.DAT"});
}

// Data copied from a disc.
TEST(FileReplacement, TakesThePlaceOfAReadOnlyFile) {
  const ScratchFolder directory;
  directory.Write("F1.DAT", "the old bars");
  constexpr auto kWrite = std::filesystem::perms::owner_write |
                          std::filesystem::perms::group_write |
                          std::filesystem::perms::others_write;
  std::filesystem::permissions(directory / "F1.DAT", kWrite, std::filesystem::perm_options::remove);
  FileReplacement fresh = ReplacementOf(directory / "F1.DAT");
  fresh.Write(Bytes("new bars"));
  fresh.Commit();
  EXPECT_EQ(directory.Read("F1.DAT"), "new bars");
  EXPECT_EQ(directory.Names(), std::vector<std::string>{"F1.DAT"}) << "the old one is gone";
}

TEST(RawFile, GrowsIsCutAndReadsToItsEnd) {
  const ScratchFolder directory;
  RawFile file(directory / "F1.DAT", RawFile::Mode::kCreate);
  file.WriteAt(4, Bytes("5678"));
  file.WriteAt(0, Bytes("1234"));
  EXPECT_EQ(ReadThrough(file), "12345678");
  file.Truncate(6);
  EXPECT_EQ(file.Size(), 6);
  EXPECT_EQ(ReadThrough(file), "123456");
  std::array<std::byte, 4> rest{};
  EXPECT_EQ(file.ReadAt(4, rest), 2U);
  EXPECT_EQ(file.ReadAt(9, rest), 0U);
  EXPECT_FALSE(file.Stamp().IsSettled());
  EXPECT_EQ(StampOf(directory / "F1.DAT")->inode, file.Stamp().inode);
}

TEST(DirectoryLock, OneWriterHoldsItWithoutHidingAnything) {
  const ScratchFolder directory;
  EXPECT_FALSE(DirectoryLock::IsHeld(directory.Text()));
  auto held = DirectoryLock::TryHold(directory.Text());
  ASSERT_TRUE(held);
  EXPECT_TRUE(DirectoryLock::IsHeld(directory.Text()));
  EXPECT_FALSE(DirectoryLock::TryHold(directory.Text()));
  EXPECT_EQ(directory.Read(DirectoryLock::kFileName), "");
  held.reset();
  EXPECT_FALSE(DirectoryLock::IsHeld(directory.Text()));
  EXPECT_TRUE(DirectoryLock::TryHold(directory.Text()));
}

}  // namespace

}  // namespace velumar
