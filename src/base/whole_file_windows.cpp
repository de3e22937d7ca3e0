#include <windows.h>

#include <algorithm>
#include <cerrno>

#include "base/handle_windows.h"
#include "base/whole_file.h"
#include "base/windows_text.h"

namespace velumar {

namespace fs = std::filesystem;

namespace {

constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

NativeHandle Open(const fs::path& file, DWORD access, DWORD disposition) {
  return OwnedHandle(::CreateFileW(file.c_str(), access, kShareAll, nullptr, disposition,
                                   FILE_ATTRIBUTE_NORMAL, nullptr));
}

[[noreturn]] void Fail(const fs::path& file, std::string_view failure) {
  throw FileError(file, failure, ErrorNumber(::GetLastError()));
}

DWORD AttributesOf(const fs::path& file, std::string_view failure) {
  const DWORD attributes = ::GetFileAttributesW(file.c_str());
  const bool there = attributes != INVALID_FILE_ATTRIBUTES;
  if (there && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0) RefuseFolder(file, failure);
  return there ? attributes : 0;
}

void WriteToDisk(const NativeHandle& out, std::string_view bytes, const fs::path& file) {
  constexpr std::size_t kBlock = 1 << 20;
  while (!bytes.empty()) {
    const auto size = static_cast<DWORD>(std::min(bytes.size(), kBlock));
    DWORD written = 0;
    if (::WriteFile(out.get(), bytes.data(), size, &written, nullptr) == 0) Fail(file, kCantWrite);
    bytes.remove_prefix(written);
  }
  if (::FlushFileBuffers(out.get()) == 0) Fail(file, kCantWrite);
}

// Another process may be reading the old file, which takes it a moment.
bool MoveOver(const fs::path& from, const fs::path& to) {
  constexpr int kTries = 50;
  for (int tries = 1; tries < kTries; ++tries) {
    if (::MoveFileExW(from.c_str(), to.c_str(),
                      MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) != 0) {
      return true;
    }
    const DWORD code = ::GetLastError();
    if (code != ERROR_ACCESS_DENIED && code != ERROR_SHARING_VIOLATION) return false;
    ::Sleep(2);
  }
  return false;
}

}  // namespace

// The journal of the file system keeps renames in their order.
void FlushFolder(const fs::path&) {}

std::string ReadWholeFile(const fs::path& file, std::size_t limit) {
  AttributesOf(file, kCantRead);
  const NativeHandle in = Open(file, GENERIC_READ, OPEN_EXISTING);
  if (!in) Fail(file, kCantRead);
  if (::GetFileType(in.get()) != FILE_TYPE_DISK) RefuseDevice(file, kCantRead);
  LARGE_INTEGER end{};
  if (::GetFileSizeEx(in.get(), &end) == 0) Fail(file, kCantRead);
  const auto size = static_cast<std::uintmax_t>(end.QuadPart);
  if (size > limit) RefuseLargeFile(file, size, limit);
  std::string bytes;
  bytes.reserve(static_cast<std::size_t>(size));
  std::string block(65536, '\0');
  DWORD read = 0;
  do {
    if (::ReadFile(in.get(), block.data(), static_cast<DWORD>(block.size()), &read, nullptr) == 0) {
      Fail(file, kCantRead);
    }
    bytes.append(block.data(), read);
    if (bytes.size() > limit) RefuseLargeFile(file, bytes.size(), limit);
  } while (read > 0);
  return bytes;
}

// The permissions of a folder hold for its files here, so a user's own folder is the user's alone.
void ReplaceWholeFile(const fs::path& file, std::string_view bytes, FileAccess) {
  std::error_code unresolved;
  const fs::path target = fs::weakly_canonical(file, unresolved);
  if (unresolved) throw FileError(file, kCantWrite, ErrorNumber(unresolved.value()));
  // A file that the user has forbidden to write isn't replaced either.
  if ((AttributesOf(target, kCantWrite) & FILE_ATTRIBUTE_READONLY) != 0) {
    throw FileError(file, kCantWrite, EACCES);
  }
  const fs::path fresh = NewNameBeside(target);
  NativeHandle out = Open(fresh, GENERIC_WRITE, CREATE_NEW);
  if (!out) Fail(file, kCantWrite);
  try {
    WriteToDisk(out, bytes, file);
    out.reset();
    if (!MoveOver(fresh, target)) Fail(file, kCantWrite);
  } catch (const FileError&) {
    out.reset();
    ::DeleteFileW(fresh.c_str());
    throw;
  }
}

}  // namespace velumar
