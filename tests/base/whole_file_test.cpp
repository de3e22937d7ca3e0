#include "base/whole_file.h"

#include <optional>

#include "support/matchers.h"
#include "support/scratch_folder.h"

namespace velumar {
namespace {

ByteView Bytes(std::string_view text) { return std::as_bytes(std::span(text)); }

std::string ReadThrough(const RawFile& file) {
  std::string bytes(64, '\0');
  bytes.resize(file.ReadAt(0, std::as_writable_bytes(std::span(bytes))));
  return bytes;
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
    EXPECT_EQ(folder.Read("F1.DAT"), bars);
    EXPECT_EQ(ReadThrough(written), bars);
  }
  EXPECT_EQ(ReadThrough(*reader), "the old bars");
  EXPECT_NE(StampOf(folder / "F1.DAT"), before);
  reader.reset();
  { const FileReplacement given_up(folder / "F1.DAT", folder / "draft"); }
  EXPECT_THAT(folder.Names(), ElementsAre("F1.DAT"));
}

TEST(FileReplacement, ReplacesAReadOnlyFileAndFollowsNoLink) {
  const ScratchFolder folder;
  folder.Write("F1.DAT", "copied from a disc");
  std::filesystem::permissions(folder / "F1.DAT", std::filesystem::perms::owner_read);
  folder.Write("mine", "kept");
  std::error_code no_links_here;
  std::filesystem::create_symlink(folder / "mine", folder / "draft", no_links_here);
  FileReplacement fresh(folder / "F1.DAT", folder / "draft");
  fresh.Write(Bytes("new bars"));
  fresh.Commit();
  EXPECT_EQ(folder.Read("F1.DAT"), "new bars");
  EXPECT_EQ(folder.Read("mine"), "kept");
  EXPECT_THAT(folder.Names(), ElementsAre("F1.DAT", "mine"));
}

TEST(WholeFile, IsReadAndReplacedOrRefusedByName) {
  const ScratchFolder folder;
  const auto file = folder / "file";
  const auto refused = [](auto text) { return ThrowsMessage<FileError>(text); };
  EXPECT_THAT([&] { ReadWholeFile(file, 9); }, refused(StartsWith(file.string())));
  ReplaceWholeFile(file, "12345");
  EXPECT_EQ(ReadWholeFile(file, 5), "12345");
  EXPECT_THAT([&] { ReadWholeFile(file, 4); }, refused(HasSubstr("limit of 4 bytes")));
  EXPECT_THAT([&] { ReplaceWholeFile(folder.Path(), "no"); },
              refused(HasSubstr("can't be written: it is a folder")));
  EXPECT_THAT(folder.Names(), ElementsAre("file"));
}

}  // namespace
}  // namespace velumar
