#include <windows.h>

#include <algorithm>
#include <stdexcept>

#include "base/windows_text.h"
#include "marketdata/stored_text.h"

namespace velumar {

namespace {

// The same in every code page.
bool IsPlain(std::string_view text) {
  return std::all_of(text.begin(), text.end(),
                     [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

[[noreturn]] void Refuse(std::string_view text) {
  throw std::invalid_argument("\"" + std::string(text) +
                              "\" has a character that market data files can't store");
}

}  // namespace

std::string TextFromFile(std::string_view bytes) {
  if (IsPlain(bytes)) return std::string(bytes);
  const int length = static_cast<int>(bytes.size());
  const int size = ::MultiByteToWideChar(CP_ACP, 0, bytes.data(), length, nullptr, 0);
  std::wstring wide(static_cast<std::size_t>(size), L'\0');
  ::MultiByteToWideChar(CP_ACP, 0, bytes.data(), length, wide.data(), size);
  return Utf8Text(wide);
}

std::string TextForFile(std::string_view utf8) {
  if (IsPlain(utf8)) return std::string(utf8);
  const std::wstring wide = WideText(utf8);
  const int length = static_cast<int>(wide.size());
  std::string bytes(wide.size() * 4, '\0');
  const int size = ::WideCharToMultiByte(CP_ACP, 0, wide.data(), length, bytes.data(),
                                         static_cast<int>(bytes.size()), nullptr, nullptr);
  bytes.resize(static_cast<std::size_t>(size));
  // A similar character is not enough: a symbol must be found again.
  if (TextFromFile(bytes) != utf8) Refuse(utf8);
  return bytes;
}

}  // namespace velumar
