#pragma once

#include <string>
#include <string_view>

namespace velumar {

// Names in market data directories are bytes of an unnamed code page: the system's own on Windows,
// Latin-1 elsewhere.
std::string TextFromFile(std::string_view bytes);
// Throws std::invalid_argument for a character that is not in the code page.
std::string TextForFile(std::string_view utf8);

}  // namespace velumar
