#pragma once

#include <string>
#include <string_view>

namespace velumar {

// Texts are UTF-8 inside; the functions of Windows take UTF-16. What can't be turned becomes the
// replacement character.
std::wstring WideText(std::string_view utf8);
std::string Utf8Text(std::wstring_view wide);

// The number of errno.h that says the same as a code of GetLastError.
int ErrorNumber(unsigned long code);

// The system's own sentence for a code, without the point at its end.
std::string SystemErrorText(unsigned long code);

}  // namespace velumar
