#pragma once

#include <string>
#include <string_view>

namespace velumar {

// Quotes one argument for a command line.
std::wstring QuotedArgument(std::string_view argument);

}  // namespace velumar
