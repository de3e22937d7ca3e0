#include "import/file_bytes.h"

#include <archive_entry.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <string_view>

#include "import/price_reader.h"

namespace velumar {

namespace {

constexpr std::size_t kPackedBlock = 64 << 10;

[[noreturn]] void ThrowImportError(const std::filesystem::path& file, std::string_view failure,
                                   int error) {
  const FileError why(file, failure, error);
  throw ImportError(std::string(failure) + ": " + why.Reason());
}

[[noreturn]] void RefuseUnpacking(archive* unpacker) {
  const char* const reason = archive_error_string(unpacker);
  throw ImportError("can't be unpacked: " + std::string(reason ? reason : "it is damaged"));
}

std::string NameOf(archive_entry* entry) {
  const char* name = archive_entry_pathname_utf8(entry);
  if (!name) name = archive_entry_pathname(entry);
  return name ? name : "";
}

// Folders, and what file managers add.
bool IsBeside(archive_entry* entry, std::string_view name) {
  return archive_entry_filetype(entry) == AE_IFDIR || name.ends_with('/') ||
         name.starts_with("__MACOSX/") || name.ends_with(".DS_Store") ||
         name.ends_with("Thumbs.db");
}

}  // namespace

FileBytes::FileBytes(const std::filesystem::path& file)
    : file_(file, RawFile::Mode::kRead, ThrowImportError), size_(file_.Size()) {
  std::array<char, 4> start{};
  const std::size_t got = file_.ReadAt(0, std::as_writable_bytes(std::span(start)));
  const std::string_view magic(start.data(), got);
  if (magic.starts_with("\x1F\x8B")) OpenGzip();
  if (magic == "PK\x03\x04" || magic == "PK\x05\x06") OpenZip();
}

std::size_t FileBytes::Read(ByteSpan into) {
  if (!unpacker_) {
    const std::size_t got = file_.ReadAt(offset_, into);
    offset_ += static_cast<std::int64_t>(got);
    return got;
  }
  std::size_t done = 0;
  while (done < into.size()) {
    const la_ssize_t got =
        archive_read_data(unpacker_.get(), into.data() + done, into.size() - done);
    if (got < 0) RefuseUnpacking(unpacker_.get());
    if (got == 0) break;
    done += static_cast<std::size_t>(got);
  }
  return done;
}

double FileBytes::Progress() const {
  return size_ == 0 ? 1 : static_cast<double>(offset_) / static_cast<double>(size_);
}

// No exception may pass through the library.
la_ssize_t FileBytes::ReadPacked(archive* unpacker, void* self, const void** bytes) {
  auto& source = *static_cast<FileBytes*>(self);
  try {
    const std::size_t got = source.file_.ReadAt(source.offset_, source.packed_);
    source.offset_ += static_cast<std::int64_t>(got);
    *bytes = source.packed_.data();
    return static_cast<la_ssize_t>(got);
  } catch (const std::exception& error) {
    archive_set_error(unpacker, EIO, "%s", error.what());
    return -1;
  }
}

la_int64_t FileBytes::Seek(archive* /*unpacker*/, void* self, la_int64_t offset, int whence) {
  auto& source = *static_cast<FileBytes*>(self);
  const std::int64_t base = whence == SEEK_SET   ? 0
                            : whence == SEEK_CUR ? source.offset_
                                                 : source.size_;
  source.offset_ = base + offset;
  return source.offset_;
}

FileBytes::Unpacker FileBytes::NewUnpacker() {
  packed_.resize(kPackedBlock);
  offset_ = 0;
  Unpacker unpacker(archive_read_new());
  if (!unpacker) throw std::bad_alloc();
  archive_read_set_read_callback(unpacker.get(), ReadPacked);
  archive_read_set_seek_callback(unpacker.get(), Seek);
  archive_read_set_callback_data(unpacker.get(), this);
  return unpacker;
}

void FileBytes::OpenGzip() {
  unpacker_ = NewUnpacker();
  archive* const unpacker = unpacker_.get();
  archive_read_support_filter_gzip(unpacker);
  archive_read_support_format_raw(unpacker);
  archive_entry* entry = nullptr;
  if (archive_read_open1(unpacker) != ARCHIVE_OK ||
      archive_read_next_header(unpacker, &entry) != ARCHIVE_OK) {
    RefuseUnpacking(unpacker);
  }
  container_ = "gzip";
}

void FileBytes::OpenZip() {
  const std::string only = OnlyEntryOfZip();
  unpacker_ = NewUnpacker();
  archive* const unpacker = unpacker_.get();
  archive_read_support_format_zip_seekable(unpacker);
  archive_entry* entry = nullptr;
  if (archive_read_open1(unpacker) != ARCHIVE_OK) RefuseUnpacking(unpacker);
  do {
    if (archive_read_next_header(unpacker, &entry) < ARCHIVE_WARN) RefuseUnpacking(unpacker);
  } while (NameOf(entry) != only);
  container_ = "zip: " + only;
}

std::string FileBytes::OnlyEntryOfZip() {
  const Unpacker unpacker = NewUnpacker();
  archive_read_support_format_zip_seekable(unpacker.get());
  if (archive_read_open1(unpacker.get()) != ARCHIVE_OK) RefuseUnpacking(unpacker.get());
  std::vector<std::string> names;
  archive_entry* entry = nullptr;
  int result = ARCHIVE_OK;
  while ((result = archive_read_next_header(unpacker.get(), &entry)) >= ARCHIVE_WARN &&
         result != ARCHIVE_EOF) {
    std::string name = NameOf(entry);
    if (name == "[Content_Types].xml" || name == "mimetype") {
      throw ImportError("is a spreadsheet or document; save the table as CSV");
    }
    if (IsBeside(entry, name)) continue;
    if (archive_entry_is_encrypted(entry) != 0) {
      throw ImportError("is protected by a password; unpack it first");
    }
    names.push_back(std::move(name));
  }
  if (result != ARCHIVE_EOF) RefuseUnpacking(unpacker.get());
  if (names.size() == 1) return names.front();
  throw ImportError(names.empty() ? std::string("is a zip without a file")
                                  : "is a zip of " + std::to_string(names.size()) +
                                        " files; unpack it and import the files");
}

}  // namespace velumar
