#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "import/file_bytes.h"
#include "import/text_encoding.h"

namespace velumar {

// The text of a price file in UTF-8, in blocks of about 1 MiB of whole lines.
class TextSource {
 public:
  // Throws ImportError, as does Next: for a file that cannot be read, is no text, or has a line of
  // more than 1 MiB.
  explicit TextSource(const std::filesystem::path& file);

  // Empty at the end. Valid until the next call. Lines end with LF or CR LF, the last one perhaps
  // with neither; in a file that ends its lines with CR, that is replaced by LF. Lines that aren't
  // UTF-8 are read as Windows-1252.
  std::string_view Next();

  const std::string& Container() const { return bytes_.Container(); }
  // "UTF-8", "UTF-16" or "Windows-1252", by what was read so far.
  std::string_view EncodingName() const;
  double Progress() const { return bytes_.Progress(); }

 private:
  void Begin();
  void ReadMore();
  void Append(std::string_view bytes);
  std::string_view Checked(std::string_view block);

  FileBytes bytes_;
  EncodingStart start_;
  bool ends_with_cr_ = false;
  bool has_windows_1252_ = false;
  bool at_end_ = false;
  std::string raw_;        // not yet decoded
  std::string text_;       // decoded
  std::size_t given_ = 0;  // bytes of text_ that the last Next has returned
  std::string converted_;  // the last block, if it was not UTF-8
};

// Takes the next line of a block, without its end; false if there is none.
inline bool TakeLine(std::string_view& block, std::string_view& line) {
  if (block.empty()) return false;
  const std::size_t end = std::min(block.find('\n'), block.size());
  line = block.substr(0, end);
  block.remove_prefix(std::min(end + 1, block.size()));
  while (line.ends_with('\r')) line.remove_suffix(1);
  return true;
}

}  // namespace velumar
