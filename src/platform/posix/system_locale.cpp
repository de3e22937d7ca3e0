#include "platform/system_locale.h"
#include "platform/posix/locale.h"

namespace velumar {

std::unique_ptr<LocaleInfo> SystemLocale() { return std::make_unique<PosixLocale>(); }

}  // namespace velumar
