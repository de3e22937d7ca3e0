#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace velumar {

enum class Encoding : std::uint8_t { kUtf8, kUtf16Little, kUtf16Big };

struct EncodingStart {
  Encoding encoding = Encoding::kUtf8;
  std::size_t mark = 0;  // bytes of the byte order mark
};

// By the byte order mark, or by the zero bytes that UTF-16 has next to Latin letters and digits.
EncodingStart RecogniseEncoding(std::string_view start);

// Appends UTF-16 as UTF-8 and returns how many bytes of `bytes` were used: an odd byte or half a
// pair at the end waits for more. Unpaired halves become U+FFFD.
std::size_t AppendUtf16(std::string_view bytes, Encoding encoding, std::string& text);

bool IsAscii(std::string_view text);
bool IsUtf8(std::string_view text);
void AppendWindows1252(std::string_view bytes, std::string& text);

}  // namespace velumar
