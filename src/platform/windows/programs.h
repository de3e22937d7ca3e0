#pragma once

#include <string>
#include <string_view>

namespace velumar {

// One argument as a program finds it again in its command line.
std::wstring QuotedArgument(std::string_view argument);

}  // namespace velumar
