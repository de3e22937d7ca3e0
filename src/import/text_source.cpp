#include "import/text_source.h"

#include <algorithm>
#include <span>

#include "import/price_reader.h"

namespace velumar {

namespace {

constexpr std::size_t kBlock = 1 << 20;

// What people try to import that isn't a table, by its first bytes.
void RefuseKnownFormats(std::string_view start) {
  struct Known {
    std::string_view magic;
    std::string_view what;
  };
  static constexpr Known kKnown[] = {
      {"\xD0\xCF\x11\xE0", "is a spreadsheet; save the table as CSV"},
      {"%PDF", "is a PDF document; download the prices as CSV"},
      {"PAR1", "is a Parquet file; save the table as CSV"},
      {"7z\xBC\xAF", "is a 7z archive; unpack it first"},
      {"Rar!", "is a RAR archive; unpack it first"},
      {"<!DOCTYPE", "is a web page; download the prices as CSV"},
      {"<html", "is a web page; download the prices as CSV"},
  };
  for (const Known& known : kKnown) {
    if (start.starts_with(known.magic)) throw ImportError(std::string(known.what));
  }
}

}  // namespace

TextSource::TextSource(const std::filesystem::path& file) : bytes_(file) {
  ReadMore();
  Begin();
}

std::string_view TextSource::Next() {
  text_.erase(0, given_);
  given_ = 0;
  for (;;) {
    Append(raw_);
    const std::size_t last = at_end_ ? text_.size() - 1 : text_.rfind('\n');
    if (at_end_ || last != std::string::npos) {
      given_ = last + 1;
      return Checked(std::string_view(text_).substr(0, given_));
    }
    if (text_.size() > kBlock) throw ImportError("has a line of more than 1 MiB; is it a table?");
    ReadMore();
  }
}

std::string_view TextSource::EncodingName() const {
  if (start_.encoding != Encoding::kUtf8) return "UTF-16";
  return has_windows_1252_ ? "Windows-1252" : "UTF-8";
}

void TextSource::Begin() {
  RefuseKnownFormats(raw_);
  start_ = RecogniseEncoding(raw_);
  raw_.erase(0, start_.mark);
  std::string sample;
  if (start_.encoding == Encoding::kUtf8) {
    ends_with_cr_ = raw_.find('\n') == std::string::npos;
  } else {
    AppendUtf16(raw_, start_.encoding, sample);
    ends_with_cr_ = sample.find('\n') == std::string::npos;
  }
}

void TextSource::ReadMore() {
  const std::size_t left = raw_.size();
  raw_.resize(left + kBlock);
  const std::size_t got = bytes_.Read(std::as_writable_bytes(std::span(raw_).subspan(left)));
  raw_.resize(left + got);
  at_end_ = got < kBlock;
}

void TextSource::Append(std::string_view bytes) {
  const std::size_t before = text_.size();
  std::size_t used = bytes.size();
  if (start_.encoding == Encoding::kUtf8) {
    text_ += bytes;
  } else {
    used = AppendUtf16(bytes, start_.encoding, text_);
  }
  if (ends_with_cr_)
    std::replace(text_.begin() + static_cast<std::ptrdiff_t>(before), text_.end(), '\r', '\n');
  raw_.erase(0, used);
}

std::string_view TextSource::Checked(std::string_view block) {
  if (block.find('\0') != std::string_view::npos) {
    throw ImportError("is not a text file; save the table as CSV");
  }
  if (IsAscii(block) || IsUtf8(block)) return block;
  has_windows_1252_ = true;
  converted_.clear();
  std::string_view line;
  while (!block.empty()) {
    const std::size_t length = std::min(block.find('\n'), block.size() - 1) + 1;
    line = block.substr(0, length);
    block.remove_prefix(length);
    if (IsUtf8(line)) {
      converted_ += line;
    } else {
      AppendWindows1252(line, converted_);
    }
  }
  return converted_;
}

}  // namespace velumar
