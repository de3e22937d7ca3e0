#include "marketdata/series_error.h"

#include <charconv>
#include <string>

#include "base/paths.h"
#include "marketdata/data_file.h"
#include "marketdata/interval.h"
#include "marketdata/metalib_error.h"

namespace velumar {

namespace {

std::string NumberText(float value) {
  char buffer[32];
  const auto end = std::to_chars(buffer, buffer + sizeof buffer, value).ptr;
  return {buffer, end};
}

std::string FieldText(const Bar& bar, BarField field) {
  switch (field) {
    case BarField::kDate:
      return std::to_string(bar.date);
    case BarField::kTime:
      return std::to_string(bar.time);
    case BarField::kOpen:
      return NumberText(bar.open);
    case BarField::kHigh:
      return NumberText(bar.high);
    case BarField::kLow:
      return NumberText(bar.low);
    case BarField::kClose:
      return NumberText(bar.close);
    case BarField::kVolume:
      return NumberText(bar.volume);
    case BarField::kOpenInterest:
      return NumberText(bar.open_interest);
  }
  return {};
}

std::string FileAndSymbol(std::string_view file, std::string_view symbol) {
  return std::string(file) + ": " + std::string(symbol);
}

}  // namespace

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

void ThrowNoColumns(std::string_view file, std::string_view symbol) {
  throw MetaLibError(
      MetaLibError::kNotStorable,
      FileAndSymbol(file, symbol) + ": the index files don't tell which fields its bars have");
}

void ThrowInUse(const std::filesystem::path& directory) {
  throw MetaLibError(MetaLibError::kDirectoryInUse,
                     "\"" + PathText(directory) + "\" is in use by another program");
}

}  // namespace velumar
