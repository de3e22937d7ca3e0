#include <windows.h>

#include "base/windows_text.h"
#include "platform/system.h"

namespace velumar {

namespace {

// Empty if the system has no such text.
std::string LocaleText(LCTYPE what) {
  constexpr LCID kUser = LOCALE_USER_DEFAULT;
  const int length = ::GetLocaleInfoW(kUser, what, nullptr, 0);
  if (length <= 0) return {};
  std::wstring text(static_cast<std::size_t>(length), L' ');
  const int filled = ::GetLocaleInfoW(kUser, what, text.data(), length);
  if (filled <= 0) return {};
  text.resize(static_cast<std::size_t>(filled) - 1);
  return Utf8Text(text);
}

// The short date of the user's region settings, which may change while the program runs.
class WindowsLocale : public LocaleInfo {
 public:
  std::string DateSeparator() const override { return LocaleText(LOCALE_SDATE); }
  std::string ShortDatePattern() const override { return LocaleText(LOCALE_SSHORTDATE); }
};

}  // namespace

std::int32_t SystemClock::Today() const {
  SYSTEMTIME now{};
  ::GetLocalTime(&now);
  return now.wYear * 10000 + now.wMonth * 100 + now.wDay;
}

std::unique_ptr<LocaleInfo> SystemLocale() { return std::make_unique<WindowsLocale>(); }

}  // namespace velumar
