#include "charthost/folder_text.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>

#include "support/scratch.h"

namespace velumar {
namespace {

// A folder in the system's own form.
std::string Native(std::string folder) {
  std::replace(folder.begin(), folder.end(), '/',
               static_cast<char>(std::filesystem::path::preferred_separator));
  return folder;
}

TEST(NormalFolder, TakesBothSeparatorsDoubledAndClosingOnes) {
  const std::vector<std::pair<const char*, const char*>> cases = {
      {"/data/SET", "/data/SET"},
      {"\\data\\SET\\", "/data/SET"},
      {"/data\\\\SET//Simulate\\   ", "/data/SET/Simulate"},
      {"/my data/50% ^+~{x}", "/my data/50% ^+~{x}"},
      {"\\", "/"},
      {"", ""},
      {"/a~/b", "/a~/b"}};
  for (const auto& [typed, folder] : cases) EXPECT_EQ(NormalFolder(typed), Native(folder)) << typed;
}

TEST(FoldersBeginningWith, OffersFoldersAloneAndCompletesWhatTheyShare) {
  const ScratchFolder scratch;
  for (const char* name : {"daily set", "daily nyse", "intraday", ".hidden"}) {
    std::filesystem::create_directory(scratch.Sub(name));
  }
  std::ofstream(scratch.Sub("daily.txt")) << "no folder";
  const std::string root = scratch.Path().string();
  const auto daily = FoldersBeginningWith(root + "\\da", 9);
  EXPECT_THAT(daily,
              testing::ElementsAre(Native(root + "/daily nyse"), Native(root + "/daily set")));
  EXPECT_EQ(CommonBeginning(daily), Native(root + "/daily "));
  EXPECT_EQ(FoldersBeginningWith(root + "/", 9).size(), 3U) << "none that is hidden";
  EXPECT_EQ(FoldersBeginningWith(root + "/", 2).size(), 2U);
  EXPECT_THAT(FoldersBeginningWith(root + "/.", 9),
              testing::ElementsAre(Native(root + "/.hidden")));
  EXPECT_TRUE(FoldersBeginningWith(root + "/nothing/here", 9).empty());
  EXPECT_TRUE(FoldersBeginningWith("relative", 9).empty());
  // No character is cut in half.
  EXPECT_EQ(CommonBeginning({"/caf\u00E9", "/caf\u00E8"}), "/caf");
}

}  // namespace
}  // namespace velumar
