#pragma once

#include <string>
#include <string_view>

namespace velumar {

// Texts are UTF-8; the functions of Windows take UTF-16. What cannot be converted becomes the
// replacement character.
std::wstring WideText(std::string_view utf8);
std::string Utf8Text(std::wstring_view wide);

// The errno.h equivalent of a code of GetLastError.
int ErrorNumber(unsigned long code);

// The system's message for a code, without the full stop.
std::string SystemErrorText(unsigned long code);

// Quotes one argument for a command line.
std::wstring QuotedArgument(std::string_view argument);

}  // namespace velumar
