#include "base/windows_text.h"

#include <windows.h>

#include <array>
#include <cerrno>

namespace velumar {

std::wstring WideText(std::string_view utf8) {
  const int bytes = static_cast<int>(utf8.size());
  const int size = ::MultiByteToWideChar(CP_UTF8, 0, utf8.data(), bytes, nullptr, 0);
  std::wstring wide(static_cast<std::size_t>(size), L'\0');
  ::MultiByteToWideChar(CP_UTF8, 0, utf8.data(), bytes, wide.data(), size);
  return wide;
}

std::string Utf8Text(std::wstring_view wide) {
  const int length = static_cast<int>(wide.size());
  const int size =
      ::WideCharToMultiByte(CP_UTF8, 0, wide.data(), length, nullptr, 0, nullptr, nullptr);
  std::string utf8(static_cast<std::size_t>(size), '\0');
  ::WideCharToMultiByte(CP_UTF8, 0, wide.data(), length, utf8.data(), size, nullptr, nullptr);
  return utf8;
}

int ErrorNumber(unsigned long code) {
  switch (code) {
    case ERROR_SUCCESS:
      return 0;
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND:
    case ERROR_INVALID_DRIVE:
    case ERROR_INVALID_NAME:
    case ERROR_BAD_NETPATH:
    case ERROR_BAD_NET_NAME:
      return ENOENT;
    case ERROR_ACCESS_DENIED:
    case ERROR_SHARING_VIOLATION:
    case ERROR_LOCK_VIOLATION:
    case ERROR_USER_MAPPED_FILE:
      return EACCES;
    case ERROR_DISK_FULL:
    case ERROR_HANDLE_DISK_FULL:
      return ENOSPC;
    case ERROR_WRITE_PROTECT:
      return EROFS;
    case ERROR_FILE_EXISTS:
    case ERROR_ALREADY_EXISTS:
      return EEXIST;
    case ERROR_FILE_TOO_LARGE:
      return EFBIG;
    case ERROR_DIRECTORY:
      return ENOTDIR;
    case ERROR_TOO_MANY_OPEN_FILES:
      return EMFILE;
    case ERROR_NOT_ENOUGH_MEMORY:
    case ERROR_OUTOFMEMORY:
      return ENOMEM;
    case ERROR_INVALID_PARAMETER:
      return EINVAL;
    default:
      return EIO;
  }
}

std::string SystemErrorText(unsigned long code) {
  std::array<wchar_t, 512> buffer{};
  const DWORD length =
      ::FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, code, 0,
                       buffer.data(), static_cast<DWORD>(buffer.size()), nullptr);
  std::string text = Utf8Text({buffer.data(), length});
  while (!text.empty() && std::string_view(" .\r\n").find(text.back()) != std::string_view::npos) {
    text.pop_back();
  }
  return text.empty() ? "error " + std::to_string(code) : text;
}

// Backslashes are special only before a quote, where each is doubled.
std::wstring QuotedArgument(std::string_view argument) {
  const std::wstring text = WideText(argument);
  if (!text.empty() && text.find_first_of(L" \t\"") == std::wstring::npos) return text;
  std::wstring quoted = L"\"";
  std::size_t backslashes = 0;
  for (const wchar_t c : text) {
    if (c == L'"') quoted.append(backslashes + 1, L'\\');
    backslashes = c == L'\\' ? backslashes + 1 : 0;
    quoted += c;
  }
  quoted.append(backslashes, L'\\');
  return quoted + L'"';
}

}  // namespace velumar
