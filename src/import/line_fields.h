#pragma once

#include <csv.h>

#include <string>
#include <string_view>
#include <vector>

namespace velumar {

// Splits lines into fields. A quoted field may hold the separator, and a quote doubled; it ends on
// its own line.
class LineFields {
 public:
  // ' ' means runs of blanks.
  explicit LineFields(char separator);
  ~LineFields();
  LineFields(const LineFields&) = delete;
  LineFields& operator=(const LineFields&) = delete;

  // Without blanks around them; valid until the next call and as long as `line`. Throws ImportError
  // for a quote that is not closed and for more than a thousand fields.
  const std::vector<std::string_view>& Split(std::string_view line);

 private:
  static void TakeField(void* bytes, std::size_t size, void* self);
  void Add(std::string_view field);
  void SplitPlain(std::string_view line);
  void SplitAtBlanks(std::string_view line);
  void SplitQuoted(std::string_view line);

  char separator_;
  csv_parser parser_{};
  std::string unquoted_;  // the text of the fields of a line with quotes
  std::string whole_;     // a line that was quoted as a whole
  std::vector<std::string_view> fields_;
};

}  // namespace velumar
