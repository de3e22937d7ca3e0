#include "platform/qt/settings_file.h"

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <functional>
#include <random>
#include <stdexcept>

#include "platform/chart_program.h"
#include "platform/qt/registry_file.h"
#include "platform/virtual_platform.h"
#include "support/full_disk.h"
#include "support/matchers.h"
#include "support/scratch_folder.h"

namespace velumar {
namespace {

namespace fs = std::filesystem;

// This process doesn't have root's permissions for as long as the object lives.
class WithoutRoot {
 public:
  WithoutRoot() {
    constexpr uid_t kNobody = 65534;
    if (user_ == 0) ::setresuid(kNobody, kNobody, user_);
    EXPECT_NE(::geteuid(), 0U);
  }
  ~WithoutRoot() { EXPECT_EQ(::setresuid(user_, user_, user_), 0); }

 private:
  uid_t user_ = ::geteuid();
};

TEST(SharedIniFile, KeepsAnyBytes) {
  // Characters that are special in INI files are frequent.
  constexpr std::string_view kSpecial("%=[]#;@,\"\\\n\r\0/. aZ\xC3\xA9", 20);
  std::mt19937 random(1);
  const ScratchFolder folder;
  SharedIniFile file(folder / "settings");
  std::map<std::string, std::string> values;
  for (int i = 0; i < 60; ++i) {
    std::string value(random() % 8, ' ');
    for (char& c : value) {
      c = random() % 4 == 0 ? static_cast<char>(random() % 256)
                            : kSpecial[random() % kSpecial.size()];
    }
    file.Write("A/b\\%\\.", std::to_string(i), values[std::to_string(i)] = value);
  }
  SharedIniFile next(folder / "settings");
  for (const auto& [name, value] : values) {
    EXPECT_EQ(next.Read("a/B\\%\\.", name), value) << testing::PrintToString(value);
  }
}

TEST(SettingsFile, IsPrivateAndMayBeALink) {
  const ScratchFolder folder;
  const fs::path ini = folder / "new folder/deeper/settings.ini";
  FileSettings settings(folder / "new folder/deeper/settings");
  EXPECT_EQ(settings.Read("LastPath"), std::nullopt);
  settings.Save("LastPath", "");
  EXPECT_EQ(settings.Read("lastpath"), "");
  EXPECT_EQ(settings.Place(), ini.string());
  EXPECT_EQ(fs::status(ini).permissions(), fs::perms(0600));
  EXPECT_EQ(fs::status(ini.parent_path()).permissions(), fs::perms(0700));

  fs::create_symlink(ini, folder / "link.ini");
  FileSettings(folder / "link").Save("Top", "2");
  EXPECT_TRUE(fs::is_symlink(folder / "link.ini")) << "a link stays a link";
  EXPECT_EQ(settings.Read("Top"), "2");

  fs::create_hard_link(ini, folder / "twin");
  settings.Save("TOP", "2");
  EXPECT_TRUE(fs::equivalent(ini, folder / "twin")) << "an unchanged value is not written again";
  settings.Save("Top", "");
  EXPECT_FALSE(fs::equivalent(ini, folder / "twin"));
}

TEST(SettingsFile, ReadsWhatTheUserEdits) {
  const ScratchFolder folder;
  WriteFile(folder / "edited.ini", "[SCORE]\r\naddress=http://scores:8080\r\n\r\nList=a, b\r\n");
  const FileSettings edited(folder / "edited");
  EXPECT_EQ(edited.ReadFrom("Score", "Address"), "http://scores:8080");
  EXPECT_EQ(edited.ReadFrom("Score", "List"), "a, b");
  std::string largest = "[Settings]\nTop=1\n";
  largest.resize(SharedIniFile::kLargest, '\n');
  WriteFile(folder / "large.ini", largest);
  EXPECT_EQ(FileSettings(folder / "large").Read("Top"), "1");
  WriteFile(folder / "large.ini", largest + '\n');
  EXPECT_EQ(FileSettings(folder / "large").Read("Top"), std::nullopt);
}

TEST(SettingsFile, ImportsTheSoundLinesOfAnEarlierVersion) {
  const ScratchFolder folder;
  const std::string old =
      "# mine\r\n[SETTINGS]\r\n\r\nTop=100% sure\r\ntop= 7 \r\nrubbish\nPath=C:\\Data\\%20x%\n"
      "Ends=a%3d\n"
      "[Sco\nTop=3\n[Score]\nA=b\nC";
  WriteFile(folder / "settings", old);
  FileSettings settings(folder / "settings");
  EXPECT_THAT(settings.TakeProblems(),
              ElementsAre(HasSubstr("\"rubbish\" is not a setting, nor are 3 more lines")));
  EXPECT_EQ(settings.Read("Path"), "C:\\Data\\ x%");
  EXPECT_EQ(settings.Read("Top"), " 7 ");
  EXPECT_EQ(settings.Read("Ends"), "a=");
  EXPECT_EQ(settings.ReadFrom("Score", "A"), "b");
  settings.Save("Top", "8");
  EXPECT_EQ(ReadFile(folder / "settings"), old) << "an earlier version can still read it";
  EXPECT_EQ(FileSettings(folder / "settings").Read("Top"), "8");
  EXPECT_EQ(FileSettings(folder / "settings").Read("Path"), "C:\\Data\\ x%");
  WriteFile(folder / "settings.ini", "[Settings]\nTop=10\n");
  EXPECT_EQ(settings.Read("Path"), std::nullopt) << "deleted by hand, imported once";
  WriteFile(folder / "bad", "rubbish\n");
  EXPECT_EQ(FileSettings(folder / "bad").TakeProblems().size(), 1U);
  EXPECT_THAT(FileSettings(folder / "bad").TakeProblems(), IsEmpty()) << "imported once";
}

TEST(SettingsFile, UsesTheOldValuesWhileTheyCantBeSaved) {
  const ScratchFolder folder;
  WriteFile(folder / "settings", "[Settings]\nTop=1\nLeft=2\nWide=3\n");
  std::unique_ptr<FileSettings> settings;
  {
    const FullDisk full(0);
    settings = std::make_unique<FileSettings>(folder / "settings");
    EXPECT_EQ(settings->Read("top"), "1");
    EXPECT_TRUE(SharedIniFile(folder / "settings").HasGroup("settings"));
    EXPECT_THROW(settings->Save("Top", "5"), std::runtime_error);
  }
  EXPECT_THAT(settings->TakeProblems(), ElementsAre(HasSubstr("could not be saved")));
  EXPECT_FALSE(fs::exists(folder / "settings.ini"));
  WriteFile(folder / "settings.ini", "[Settings]\nLeft=9\n");  // by another process
  settings->Save("Top", "4");
  const std::string before = folder.Read("settings.ini");
  {
    const FullDisk full(64);
    EXPECT_THAT([&] { settings->Save("Top", std::string(500, '2')); },
                ThrowsMessage<std::runtime_error>(HasSubstr(folder.Sub("settings.ini"))));
  }
  EXPECT_EQ(folder.Read("settings.ini"), before);
  EXPECT_THAT(folder.Names(), ElementsAre("settings", "settings.ini"));
  settings->Save("Top", "6");
  const FileSettings next(folder / "settings");
  EXPECT_EQ(next.Read("Top"), "6");
  EXPECT_EQ(next.Read("Left"), "9");
  EXPECT_EQ(next.Read("Wide"), "3");
}

// In particular, devices and huge files are not read.
TEST(SettingsFile, RenamesAndReportsADamagedFile) {
  const ScratchFolder folder;
  const auto ini = folder / "settings.ini";
  const std::vector<std::pair<std::function<void()>, std::string>> cases{
      {[&] { WriteFile(ini, "[Settings]\nTop=1\nrubbish\n"); }, "it is not a settings file"},
      {[&] { fs::create_directories(ini / "inside"); }, "it is a folder"},
      {[&] { ASSERT_EQ(::mkfifo(ini.c_str(), 0600), 0); }, "it is a pipe or a device"},
      {[&] { fs::create_symlink("/dev/zero", ini); }, "it is a pipe or a device"},
      {[&] {
         WriteFile(ini, "");
         fs::resize_file(ini, 5'000'000'000);
       },
       "it has 5000000000 bytes"},
  };
  WriteFile(folder / "settings", "[Settings]\nLeft=9\n");
  int number = 0;
  for (const auto& [make, why] : cases) {
    make();
    FileSettings settings(folder / "settings");
    const std::string aside = "settings.ini.damaged-" + std::to_string(++number);
    EXPECT_EQ(settings.Read("Top"), std::nullopt);
    EXPECT_THAT(settings.TakeProblems(),
                ElementsAre(AllOf(HasSubstr(ini.string()), HasSubstr(why), HasSubstr(aside))));
    EXPECT_THAT(settings.TakeProblems(), IsEmpty());
    EXPECT_TRUE(fs::exists(fs::symlink_status(folder / aside)));
    EXPECT_EQ(FileSettings(folder / "settings").Read("Left"), std::nullopt) << "imported again";
    settings.Save("Top", "2");
    EXPECT_EQ(FileSettings(folder / "settings").Read("Top"), "2");
    fs::remove(ini);
  }
  EXPECT_EQ(folder.Read("settings.ini.damaged-1"), "[Settings]\nTop=1\nrubbish\n");
}

TEST(SettingsFile, ReportsAFileThatMayNotBeReadAndLeavesIt) {
  const ScratchFolder folder;
  const auto ini = folder / "settings.ini";
  WriteFile(ini, "[Settings]\nTop=1\n");
  fs::permissions(ini, fs::perms(0200));
  fs::permissions(folder.Path(), fs::perms(0777));
  {
    const WithoutRoot nobody;
    FileSettings settings(folder / "settings");
    EXPECT_THAT(settings.TakeProblems(), ElementsAre(HasSubstr("no permission to read")));
    EXPECT_THROW(settings.Save("Left", "2"), std::runtime_error);
    EXPECT_EQ(settings.Read("Top"), std::nullopt);
    EXPECT_THAT(settings.TakeProblems(), IsEmpty());
  }
  fs::permissions(ini, fs::perms(0600));
  EXPECT_EQ(folder.Read("settings.ini"), "[Settings]\nTop=1\n");
  EXPECT_THAT(folder.Names(), ElementsAre("settings.ini"));
}

TEST(SettingsFile, ProcessesRenameADamagedFileOnceAndKeepEachOthersChanges) {
  constexpr int kProcesses = 4;
  constexpr int kSaves = 3;
  for (int round = 0; round < 6; ++round) {
    const ScratchFolder folder;
    WriteFile(folder / "settings.ini", "rubbish\n");
    std::vector<pid_t> children;
    for (int i = 0; i < kProcesses; ++i) {
      children.push_back(::fork());
      if (children.back() != 0) continue;
      FileSettings settings(folder / "settings");
      for (int save = 0; save < kSaves; ++save) {
        settings.Save(std::to_string(i * kSaves + save), "kept");
      }
      ::_exit(0);
    }
    const FileSettings watching(folder / "settings");
    for (const pid_t child : children) {
      int status = 1;
      ASSERT_EQ(::waitpid(child, &status, 0), child);
      ASSERT_EQ(status, 0);
    }
    EXPECT_FALSE(fs::exists(folder / "settings.ini.damaged-2")) << round;
    for (int i = 0; i < kProcesses * kSaves; ++i) {
      EXPECT_EQ(watching.Read(std::to_string(i)), "kept") << round;
    }
  }
}

TEST(RegistryFile, ReportsDamagedValuesAndAFileThatCantBeWritten) {
  const ScratchFolder folder;
  const std::string damaged = "[HKEY_CURRENT_USER\\K]\na=dword:12\nb=C:\\plain\n";
  WriteFile(folder / "registry", damaged);
  FileRegistry registry(folder / "registry");
  std::string text;
  for (const char* const name : {"a", "b"}) {
    EXPECT_EQ(registry.ReadText("K", name, text), 1009) << name;
  }
  EXPECT_EQ(ReadFile(folder / "registry"), damaged);
  constexpr RegistryRoot kRoot = RegistryRoot::kCurrentUser;
  FileRegistry unwritable(folder / "registry/registry");
  EXPECT_EQ(unwritable.CreateKey(kRoot, "K"), 1013);
  EXPECT_FALSE(unwritable.HasKey(kRoot, "K"));
  WriteFile(folder / "blocked.ini", "rubbish\n");
  std::optional<FileRegistry> blocked;
  fs::permissions(folder.Path(), fs::perms(0555));
  {
    const WithoutRoot nobody;
    EXPECT_EQ(FileRegistry(folder / "denied").CreateKey(kRoot, "K"), 5);
    blocked.emplace(folder / "blocked");
    EXPECT_EQ(blocked->ReadText("K", "a", text), 1009) << "can't be renamed";
  }
  fs::permissions(folder.Path(), fs::perms(0700));
  WriteFile(folder / "blocked.ini", "");
  fs::last_write_time(folder / "blocked.ini",
                      fs::file_time_type::clock::now() + std::chrono::hours(1));
  EXPECT_EQ(blocked->ReadText("K", "a", text), 2) << "repaired";
}

TEST(ChartProgramKeys, FollowTheProgramsFolderAndVersion) {
  const ScratchFolder folder;
  FileRegistry registry(folder / "registry");
  const auto path = [&](const std::string& version) {
    std::string text = "none";
    registry.ReadText("Software\\Equis\\Common\\" + version + "\\File Paths", "ProgramPath", text);
    return text;
  };
  EnsureChartProgramKeys(registry, "/");  // which exists
  // The program has moved: the first folder doesn't contain it.
  EnsureChartProgramKeys(registry, folder.Text());
  WriteFile(folder / "MSWIN.EXE", "");
  EnsureChartProgramKeys(registry, "/third");
  EXPECT_EQ(path("8.0"), folder.Text()) << "a folder with the program stays";
  registry.CreateKey(RegistryRoot::kLocalMachine,
                     "SOFTWARE\\Equis International\\MetaStock Professional\\9.0");
  EnsureChartProgramKeys(registry, "/nine");
  EXPECT_EQ(path("9.0"), "/nine");
  struct NoMark : MemoryRegistry {
    explicit NoMark(long error) : code(error) {}
    long CreateKey(RegistryRoot root, std::string_view key) override {
      return root == RegistryRoot::kLocalMachine ? code : MemoryRegistry::CreateKey(root, key);
    }
    long code;
  };
  NoMark denied(5);
  EXPECT_NO_THROW(EnsureChartProgramKeys(denied, "/x")) << "only administrators may set it";
  NoMark broken(1013);
  EXPECT_THROW(EnsureChartProgramKeys(broken, "/x"), std::runtime_error);
}

}  // namespace
}  // namespace velumar
