#pragma once

#include <string>
#include <string_view>

namespace velumar {

// Without the blanks (only character 32) at both ends.
std::string Trimmed(std::string_view text);

// Upper-cases only a to z: symbols may contain bytes of any code page.
std::string UpperCased(std::string_view text);

// A symbol in the form in which symbols are compared: trimmed, then upper-cased.
std::string NormalisedSymbol(std::string_view text);

// `text` with a "\" at its end, added if it is missing.
std::string WithClosingBackslash(std::string_view text);

// Names in market data are bytes of an unnamed code page, read as Latin-1.
std::string Latin1ToUtf8(std::string_view bytes);

// Throws std::invalid_argument, naming the text, for a character above U+00FF.
std::string Utf8ToLatin1(std::string_view text);

}  // namespace velumar
