#pragma once

#include <string>
#include <string_view>

namespace velumar {

// Names in market data directories are bytes of an unnamed code page: Latin-1, or the system's own
// where it has one.
std::string TextFromFile(std::string_view bytes);
// Throws std::invalid_argument for a character that the code page hasn't.
std::string TextForFile(std::string_view utf8);

}  // namespace velumar
