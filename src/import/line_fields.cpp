#include "import/line_fields.h"

#include <algorithm>
#include <cstring>
#include <new>

#include "base/text.h"
#include "import/field_text.h"
#include "import/price_reader.h"

namespace velumar {

namespace {

constexpr std::size_t kMostFields = 1000;

// True if " AM" or " PM" follows a time of this length at the start of a line.
bool HasHalfOfDay(std::string_view line, std::size_t length) {
  const std::size_t colon = line.find(':');
  if (colon > length || colon == 0 || !IsDigit(line[colon - 1])) return false;
  const std::string next = UpperCased(line.substr(length, 4));
  return next == " AM" || next == " PM" || next == " AM " || next == " PM ";
}

}  // namespace

LineFields::LineFields(char separator) : separator_(separator) {
  if (csv_init(&parser_, CSV_STRICT | CSV_STRICT_FINI) != 0) throw std::bad_alloc();
  csv_set_delim(&parser_, static_cast<unsigned char>(separator));
}

LineFields::~LineFields() { csv_free(&parser_); }

const std::vector<std::string_view>& LineFields::Split(std::string_view line) {
  fields_.clear();
  if (line.find('"') != std::string_view::npos) {
    SplitQuoted(line);
    if (fields_.size() != 1 || fields_[0].find(separator_) == std::string_view::npos) {
      return fields_;
    }
    // Some programs quote whole lines.
    whole_ = fields_[0];
    line = whole_;
    fields_.clear();
  }
  if (separator_ == ' ') {
    SplitAtBlanks(line);
  } else {
    SplitPlain(line);
  }
  return fields_;
}

void LineFields::Add(std::string_view field) {
  if (fields_.size() == kMostFields) {
    throw ImportError("has more than " + std::to_string(kMostFields) + " fields");
  }
  fields_.push_back(Stripped(field));
}

void LineFields::SplitPlain(std::string_view line) {
  for (;;) {
    const void* const end = std::memchr(line.data(), separator_, line.size());
    if (!end) break;
    const auto length = static_cast<std::size_t>(static_cast<const char*>(end) - line.data());
    Add(line.substr(0, length));
    line.remove_prefix(length + 1);
  }
  Add(line);
}

void LineFields::SplitAtBlanks(std::string_view line) {
  for (;;) {
    line.remove_prefix(std::min(line.find_first_not_of(' '), line.size()));
    if (line.empty()) return;
    std::size_t length = std::min(line.find(' '), line.size());
    if (HasHalfOfDay(line, length)) length += 3;
    Add(line.substr(0, length));
    line.remove_prefix(length);
  }
}

void LineFields::TakeField(void* bytes, std::size_t size, void* self) {
  auto& fields = *static_cast<LineFields*>(self);
  if (fields.fields_.size() > kMostFields) return;  // refused once the line is parsed
  const std::size_t start = fields.unquoted_.size();
  // The text never moves: room for the whole line is reserved.
  if (size > 0) fields.unquoted_.append(static_cast<const char*>(bytes), size);
  const auto field = Stripped(std::string_view(fields.unquoted_).substr(start));
  if (fields.separator_ != ' ' || !field.empty()) fields.fields_.push_back(field);
}

void LineFields::SplitQuoted(std::string_view line) {
  unquoted_.clear();
  unquoted_.reserve(line.size());
  const bool parsed =
      csv_parse(&parser_, line.data(), line.size(), TakeField, nullptr, this) == line.size() &&
      csv_fini(&parser_, TakeField, nullptr, this) == 0;
  if (!parsed) {
    csv_free(&parser_);
    if (csv_init(&parser_, CSV_STRICT | CSV_STRICT_FINI) != 0) throw std::bad_alloc();
    csv_set_delim(&parser_, static_cast<unsigned char>(separator_));
    throw ImportError("has a quote that is not closed");
  }
  if (fields_.size() > kMostFields) {
    throw ImportError("has more than " + std::to_string(kMostFields) + " fields");
  }
}

}  // namespace velumar
