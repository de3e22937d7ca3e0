#include "base/text.h"

#include <stdexcept>

namespace velumar {
namespace {

TEST(Text, SymbolsAreTrimmedAndUpperCasedInAsciiOnly) {
  EXPECT_EQ(NormalisedSymbol("  abc x "), "ABC X");
  EXPECT_EQ(NormalisedSymbol("caf\xC3\xA9"), "CAF\xC3\xA9");
}

TEST(Text, EveryByteSurvivesTheRoundTrip) {
  std::string bytes;
  for (int byte = 0; byte < 256; ++byte) bytes += static_cast<char>(byte);
  EXPECT_EQ(Utf8ToLatin1(Latin1ToUtf8(bytes)), bytes);
  EXPECT_THROW(Utf8ToLatin1("\xE2\x82\xAC"), std::invalid_argument);
  EXPECT_THROW(Utf8ToLatin1("\xC3"), std::invalid_argument);
}

}  // namespace
}  // namespace velumar
