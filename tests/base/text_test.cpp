#include "base/text.h"

#include <stdexcept>

#include "base/paths.h"

namespace velumar {
namespace {

TEST(Text, SymbolsAreTrimmedAndUpperCasedInAsciiOnly) {
  EXPECT_EQ(NormalisedSymbol("  abc x "), "ABC X");
  EXPECT_EQ(NormalisedSymbol("caf\xC3\xA9"), "CAF\xC3\xA9");
  EXPECT_EQ(NormalisedSymbol("   "), "");
}

TEST(Text, EveryByteSurvivesTheRoundTrip) {
  std::string bytes;
  for (int byte = 0; byte < 256; ++byte) bytes += static_cast<char>(byte);
  EXPECT_EQ(Utf8ToLatin1(Latin1ToUtf8(bytes)), bytes);
  EXPECT_THROW(Utf8ToLatin1("\xE2\x82\xAC"), std::invalid_argument);
  EXPECT_THROW(Utf8ToLatin1("\xC3"), std::invalid_argument);
}

TEST(Text, FolderTextsBecomeNativePaths) {
  EXPECT_EQ(WithClosingBackslash("a"), "a\\");
  EXPECT_EQ(WithClosingBackslash("a\\"), "a\\");
  EXPECT_EQ(NativePath("data\\\\Simulate\\") / "MASTER",
            std::filesystem::path("data") / "Simulate" / "MASTER");
  EXPECT_EQ(PathText(NativePath("caf\xC3\xA9")), "caf\xC3\xA9");
}

}  // namespace
}  // namespace velumar
