#include "platform/windows/system_locale.h"

#include <windows.h>

#include "base/windows_text.h"
#include "platform/system_locale.h"

namespace velumar {

namespace {

// Empty where the system doesn't tell.
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

}  // namespace

std::string WindowsLocale::DateSeparator() const { return LocaleText(LOCALE_SDATE); }

std::string WindowsLocale::ShortDatePattern() const { return LocaleText(LOCALE_SSHORTDATE); }

std::unique_ptr<LocaleInfo> SystemLocale() { return std::make_unique<WindowsLocale>(); }

}  // namespace velumar
