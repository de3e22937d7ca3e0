#include "base/whole_file.h"

#include <array>
#include <optional>

#include "support/scratch_folder.h"

namespace velumar {
namespace {

constexpr auto kAllWrite = std::filesystem::perms::owner_write |
                           std::filesystem::perms::group_write |
                           std::filesystem::perms::others_write;

ByteView Bytes(std::string_view text) { return std::as_bytes(std::span(text)); }

std::string ReadThrough(const RawFile& file) {
  std::array<std::byte, 64> bytes{};
  const std::size_t got = file.ReadAt(0, bytes);
  return {reinterpret_cast<const char*>(bytes.data()), got};
}

// The chart program may have the file open while a step replaces it.
TEST(FileReplacement, ReplacesAFileThatAReaderHasOpen) {
  const ScratchFolder folder;
  folder.Write("F1.DAT", "the old bars");
  std::optional<RawFile> reader(std::in_place, folder / "F1.DAT", RawFile::Mode::kRead);
  const auto before = StampOf(folder / "F1.DAT");
  for (const std::string_view bars : {"new bars", "newer bars, and more of them"}) {
    FileReplacement fresh(folder / "F1.DAT", folder / "draft");
    fresh.Write(Bytes(bars));
    EXPECT_NE(folder.Read("F1.DAT"), bars);
    const RawFile written = fresh.Commit();
    EXPECT_EQ(written.Path(), folder / "F1.DAT");
    EXPECT_EQ(folder.Read("F1.DAT"), bars);
    EXPECT_EQ(ReadThrough(written), bars);
  }
  EXPECT_EQ(ReadThrough(*reader), "the old bars");
  EXPECT_NE(StampOf(folder / "F1.DAT"), before);
  reader.reset();
  { const FileReplacement given_up(folder / "F1.DAT", folder / "draft"); }
  EXPECT_EQ(folder.Names(), std::vector<std::string>{"F1.DAT"});
}

TEST(FileReplacement, ReplacesAReadOnlyFileAndNoFileBehindALink) {
  const ScratchFolder folder;
  folder.Write("F1.DAT", "copied from a disc");
  std::filesystem::permissions(folder / "F1.DAT", kAllWrite, std::filesystem::perm_options::remove);
  folder.Write("mine", "kept");
  std::error_code no_links_here;
  std::filesystem::create_symlink(folder / "mine", folder / "draft", no_links_here);
  FileReplacement fresh(folder / "F1.DAT", folder / "draft");
  fresh.Write(Bytes("new bars"));
  fresh.Commit();
  EXPECT_EQ(folder.Read("F1.DAT"), "new bars");
  EXPECT_EQ(folder.Read("mine"), "kept");
  EXPECT_THAT(folder.Names(), testing::ElementsAre("F1.DAT", "mine"));
}

TEST(RawFile, GrowsIsCutAndReadsToItsEnd) {
  const ScratchFolder folder;
  RawFile file(folder / "F1.DAT", RawFile::Mode::kCreate);
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
  EXPECT_EQ(StampOf(folder / "F1.DAT")->inode, file.Stamp().inode);
}

std::string Refusal(const std::function<void()>& work) {
  try {
    work();
  } catch (const FileError& error) {
    return error.what();
  }
  return "";
}

TEST(WholeFile, IsReadAndReplacedOrRefusedByName) {
  const ScratchFolder folder;
  const auto file = folder / "file";
  EXPECT_THAT(Refusal([&] { ReadWholeFile(file, 9); }), testing::StartsWith(file.string()));
  ReplaceWholeFile(file, "one", FileAccess::kUsual);
  ReplaceWholeFile(file, "12345", FileAccess::kUserAlone);
  EXPECT_EQ(ReadWholeFile(file, 5), "12345");
  EXPECT_THAT(Refusal([&] { ReadWholeFile(file, 4); }), testing::HasSubstr("limit of 4 bytes"));
  const auto replace = [](const std::filesystem::path& path) {
    return Refusal([&] { ReplaceWholeFile(path, "no", FileAccess::kUsual); });
  };
  EXPECT_THAT(replace(folder.Path()), testing::HasSubstr("can't be written: it is a folder"));
  EXPECT_THAT(replace(folder / "none/file"), testing::HasSubstr("none/file can't be written"));
  EXPECT_THAT(folder.Names(), testing::ElementsAre("file"));
}

}  // namespace
}  // namespace velumar
