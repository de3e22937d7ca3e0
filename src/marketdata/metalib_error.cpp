#include "marketdata/metalib_error.h"

#include <cerrno>
#include <charconv>
#include <system_error>

#include "base/paths.h"
#include "marketdata/bar_layout.h"
#include "marketdata/data_file.h"
#include "marketdata/interval.h"

namespace velumar {

namespace {

std::string ReasonText(int error, const std::string& action) {
  switch (error) {
    case EACCES:
    case EPERM:
      return "no permission to " + action;
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
      return "failed to " + action + ": " + std::generic_category().message(error);
  }
}

std::string FieldText(const Bar& bar, BarField field) {
  if (field == BarField::kDate) return std::to_string(bar.date);
  if (field == BarField::kTime) return std::to_string(bar.time);
  char buffer[32];
  return {buffer, std::to_chars(buffer, buffer + sizeof buffer, bar.*FloatField(field)).ptr};
}

std::string FileAndSymbol(std::string_view file, std::string_view symbol) {
  return std::string(file) + ": " + std::string(symbol);
}

}  // namespace

void ThrowMarketFileError(const std::filesystem::path& file, std::string_view failure, int error) {
  const bool reading = failure == kCantRead;
  throw MetaLibError(reading ? MetaLibError::kReadFailed : MetaLibError::kWriteFailed,
                     PathText(file.filename()) + ": " +
                         ReasonText(error, reading ? "read" : "write") + " (in " +
                         PathText(file.parent_path()) + ")");
}

void ThrowNotOpen() { throw MetaLibError(MetaLibError::kNotOpen, "No directory is open"); }

void ThrowNoSeriesSelected(std::string_view call) {
  throw MetaLibError(MetaLibError::kNoSeries, std::string(call) + ": no series is selected");
}

void ThrowSeriesNotFound(std::string_view symbol, int interval,
                         const std::filesystem::path& directory) {
  throw MetaLibError(MetaLibError::kSeriesNotFound, "There is no series \"" + std::string(symbol) +
                                                        "\", " + IntervalName(interval) +
                                                        ", in \"" + PathText(directory) + "\"");
}

void ThrowNotStorable(std::string_view file, std::string_view symbol, const Bar& bar,
                      BarField field) {
  std::string when = std::to_string(bar.date);
  if (bar.time != 0) when += " " + std::to_string(bar.time);
  throw MetaLibError(MetaLibError::kNotStorable, FileAndSymbol(file, symbol) + ", bar of " + when +
                                                     ": the " + std::string(BarFieldName(field)) +
                                                     " " + FieldText(bar, field) +
                                                     " can't be stored");
}

void ThrowSeriesFull(std::string_view file, std::string_view symbol) {
  throw MetaLibError(MetaLibError::kSeriesFull, FileAndSymbol(file, symbol) +
                                                    ": a data file holds at most " +
                                                    std::to_string(kMostBars) + " bars");
}

void ThrowInUse(const std::filesystem::path& directory) {
  throw MetaLibError(MetaLibError::kDirectoryInUse,
                     "\"" + PathText(directory) + "\" is in use by another program");
}

}  // namespace velumar
