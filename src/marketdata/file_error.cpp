#include "marketdata/file_error.h"

#include <cerrno>
#include <string>
#include <system_error>

#include "base/paths.h"
#include "marketdata/metalib_error.h"

namespace velumar {

namespace {

std::string Reason(int system_error, const char* what_for) {
  switch (system_error) {
    case EACCES:
    case EPERM:
      return std::string("no permission to ") + what_for;
    case ENOENT:
      return "there is no such file or folder";
    case EISDIR:
      return "is a folder, not a file";
    case ELOOP:
      return "is a link, which is not followed here";
    case ENOTSUP:
      return "is not a regular file";
    case ENOSPC:
      return "the disk is full";
    case EFBIG:
      return "the file has reached the largest size allowed";
    case EROFS:
      return "the disk is read-only";
    default:
      return "failed to " + std::string(what_for) + ": " +
             std::generic_category().message(system_error);
  }
}

std::string Sentence(const std::filesystem::path& file, const std::string& reason) {
  return PathText(file.filename()) + ": " + reason + " (in " + PathText(file.parent_path()) + ")";
}

}  // namespace

void ThrowReadFailed(const std::filesystem::path& file, int system_error) {
  throw MetaLibError(MetaLibError::kReadFailed, Sentence(file, Reason(system_error, "read")));
}

void ThrowWriteFailed(const std::filesystem::path& file, int system_error) {
  throw MetaLibError(MetaLibError::kWriteFailed, Sentence(file, Reason(system_error, "write")));
}

}  // namespace velumar
