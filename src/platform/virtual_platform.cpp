#include "platform/virtual_platform.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "platform/chart_program.h"

namespace velumar {

namespace {

constexpr std::string_view kOwnTitle = "Velumar";
constexpr std::string_view kBuiltInDirectory = "C:\\MetaStock Data\\Samples\\";
constexpr long kNotThere = 2;

}  // namespace

void VirtualEventLoop::ProcessPending() {
  RunDue(now_);
  if (on_pending_) on_pending_();
}

void VirtualEventLoop::WaitFor(Milliseconds time) {
  const Milliseconds end = now_ + time;
  RunDue(end);
  // An event may have waited longer itself.
  now_ = std::max(now_, end);
}

void VirtualEventLoop::Schedule(Milliseconds delay, std::function<void()> event) {
  scheduled_.emplace(now_ + delay, std::move(event));
}

void VirtualEventLoop::RunDue(Milliseconds until) {
  while (!scheduled_.empty() && scheduled_.begin()->first <= until) {
    const auto next = scheduled_.begin();
    now_ = std::max(now_, next->first);
    const std::function<void()> event = std::move(next->second);
    scheduled_.erase(next);
    event();
  }
}

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

KeyOutcome RecordingChart::SendInBackground(std::string_view keys) { return Send(keys); }

void RecordingBoxes::Show(std::string_view text, BoxIcon) {
  shown.emplace_back(text);
  if (const auto event = std::exchange(on_show, nullptr)) event();
}

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

std::optional<std::string> MemorySettings::ReadFrom(std::string_view section,
                                                    std::string_view key) const {
  const std::string prefix = section == kSection ? "" : std::string(section) + "/";
  const auto found = texts.find(prefix + std::string(key));
  return found == texts.end() ? std::nullopt : std::optional(found->second);
}

void MemorySettings::Save(std::string_view key, std::string_view text) {
  if (!failure.empty()) throw std::runtime_error(failure);
  texts.insert_or_assign(std::string(key), std::string(text));
}

MemoryRegistry::Values* MemoryRegistry::Find(RegistryRoot root, std::string_view key) {
  const auto found = keys_.find({root, std::string(key)});
  return found == keys_.end() ? nullptr : &found->second;
}

long MemoryRegistry::CreateKey(RegistryRoot root, std::string_view key) {
  keys_.try_emplace({root, std::string(key)});
  return 0;
}

long MemoryRegistry::ReadText(std::string_view key, std::string_view name, std::string& text) {
  const Values* const values = Find(RegistryRoot::kCurrentUser, key);
  if (values == nullptr || !values->contains(name)) return kNotThere;
  text = values->find(name)->second;
  return 0;
}

long MemoryRegistry::WriteText(std::string_view key, std::string_view name, std::string_view text) {
  Values* const values = Find(RegistryRoot::kCurrentUser, key);
  if (values == nullptr) return kNotThere;
  values->insert_or_assign(std::string(name), std::string(text));
  return 0;
}

std::string ScriptedWeb::Get(const std::string& address, std::string_view target,
                             const std::function<bool()>& wanted) {
  asked.push_back(address + std::string(target));
  if (during_request) during_request();
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
