#include "platform/virtual_platform.h"

#include <algorithm>
#include <stdexcept>

#include "platform/chart_program.h"

namespace velumar {

namespace {

constexpr std::string_view kOwnTitle = "Velumar";
constexpr std::string_view kBuiltInDirectory = "C:\\MetaStock Data\\Samples\\";
constexpr long kNotThere = 2;

}  // namespace

std::vector<WindowId> RecordingChart::TopLevelWindows() {
  return running ? std::vector<WindowId>{kWindow} : std::vector<WindowId>{};
}

std::string RecordingChart::WindowTitle(WindowId) { return std::string(kChartTitle); }

bool FixedScreen::Shows(float left, float top, float window_width, float window_height) const {
  return left < width && top < height && left + window_width > 0 && top + window_height > 0;
}

bool RecordingChart::BringToFront(std::string_view title) {
  const bool there = title == kOwnTitle || (title == kChartTitle && running);
  if (!there) return false;
  front = title;
  focused = title == kOwnTitle ? kOwnWindow : kWindow;
  return true;
}

WindowOwner RecordingChart::OwnerOf(WindowId window) {
  if (window == kOwnWindow) return WindowOwner::kOwn;
  return window == kWindow ? WindowOwner::kChartProgram : WindowOwner::kOther;
}

bool RecordingChart::GiveFocus(WindowId window) {
  if (window == hidden) return false;
  focused = window;
  front = window == kOwnWindow ? kOwnTitle : window == kWindow ? kChartTitle : "";
  return true;
}

KeyOutcome RecordingChart::Send(std::string_view keys) {
  sent.emplace_back(keys);
  return outcome;
}

KeyOutcome RecordingChart::SendBehind(std::string_view keys) { return Send(keys); }

std::size_t RecordingBoxes::Ask(std::string_view text, const std::vector<std::string>& offered) {
  shown.emplace_back(text);
  if (answers.empty()) return offered.size() - 1;
  const std::size_t answer = answers.front();
  answers.erase(answers.begin());
  return answer;
}

std::string ScriptedFolders::BrowseForFolder(std::string_view) {
  if (answers.empty()) throw std::runtime_error("nobody is there to choose a folder");
  std::string answer = answers.front();
  answers.erase(answers.begin());
  return answer;
}

std::optional<std::string> ScriptedFiles::ChooseFile(const std::vector<FileForm>& forms,
                                                     std::string_view suggestion) {
  offered = forms;
  suggested = suggestion;
  if (answers.empty()) return std::nullopt;
  std::string file = std::move(answers.front());
  answers.erase(answers.begin());
  return file;
}

std::optional<std::uint32_t> ScriptedColours::ChooseColour(std::uint32_t) {
  if (!failure.empty()) throw std::runtime_error(failure);
  return answer;
}

std::optional<std::string> MemorySettings::Read(std::string_view key) const {
  const auto found = texts.find(key);
  if (found == texts.end()) return std::nullopt;
  return found->second;
}

std::optional<std::string> MemorySettings::ReadFrom(std::string_view section,
                                                    std::string_view key) const {
  return Read(std::string(section) + "/" + std::string(key));
}

void MemorySettings::Save(std::string_view key, std::string_view text) {
  if (!failure.empty()) throw std::runtime_error(failure);
  texts.insert_or_assign(std::string(key), std::string(text));
}

MemoryRegistry::Key* MemoryRegistry::Find(RegistryRoot root, std::string_view sub_key) {
  const auto found = std::find_if(keys_.begin(), keys_.end(), [&](const Key& key) {
    return key.root == root && key.sub_key == sub_key && !key.deleted;
  });
  return found == keys_.end() ? nullptr : &*found;
}

long MemoryRegistry::OpenKey(RegistryRoot root, std::string_view sub_key, std::uint32_t,
                             RegistryKey& key) {
  const Key* found = Find(root, sub_key);
  if (found == nullptr) return kNotThere;
  key = static_cast<RegistryKey>(found - keys_.data()) + 1;
  return 0;
}

long MemoryRegistry::QueryValue(RegistryKey key, std::string_view name, RegistryType& type,
                                std::string& bytes) {
  const auto& values = keys_.at(key - 1).values;
  const auto found = values.find(name);
  if (found == values.end()) return kNotThere;
  type = found->second.type;
  bytes = found->second.bytes;
  return 0;
}

long MemoryRegistry::SetValue(RegistryKey key, std::string_view name, RegistryType type,
                              std::string_view bytes) {
  keys_.at(key - 1).values.insert_or_assign(std::string(name), Value{type, std::string(bytes)});
  return 0;
}

long MemoryRegistry::DeleteValue(RegistryKey key, std::string_view name) {
  auto& values = keys_.at(key - 1).values;
  const auto found = values.find(name);
  if (found == values.end()) return kNotThere;
  values.erase(found);
  return 0;
}

long MemoryRegistry::CreateKey(RegistryRoot root, std::string_view sub_key) {
  if (Find(root, sub_key) == nullptr) keys_.push_back({root, std::string(sub_key), false, {}});
  return 0;
}

long MemoryRegistry::DeleteKey(RegistryRoot root, std::string_view sub_key) {
  Key* found = Find(root, sub_key);
  if (found == nullptr) return kNotThere;
  found->deleted = true;
  return 0;
}

std::string ScriptedWeb::Get(const std::string& address, std::string_view target,
                             const std::function<bool()>& wanted) {
  asked.push_back(address + std::string(target));
  if (meanwhile) meanwhile();
  if (!wanted()) throw WebError("cancelled");
  if (answers.empty()) throw WebError("there is no network");
  std::string answer = answers.front();
  answers.erase(answers.begin());
  return answer;
}

Platform VirtualPlatform::References() {
  return {events,   chart,
          chart,    boxes,
          folders,  files,
          colours,  clipboard,
          printers, warning_settings_,
          registry, screen,
          locale,   clock,
          programs, web,
          "",       std::string(kBuiltInDirectory),
          "",       ":memory:"};
}

}  // namespace velumar
