#pragma once

#include <string>
#include <string_view>

namespace velumar {

// Blanks (the character 32 alone) cut off at both ends.
std::string Trimmed(std::string_view text);

// Upper-cases a to z only: symbols may hold bytes of any code page.
std::string UpperCased(std::string_view text);

// How symbols are compared everywhere: trimmed, then upper-cased.
std::string NormalisedSymbol(std::string_view text);

// `text` with one "\" at its end, added if it is missing.
std::string WithClosingBackslash(std::string_view text);

// Names of market data directories are bytes of an unnamed code page, read as Latin-1.
std::string Latin1ToUtf8(std::string_view bytes);

// Characters above U+00FF have no byte and throw std::invalid_argument, naming the text.
std::string Utf8ToLatin1(std::string_view text);

}  // namespace velumar
