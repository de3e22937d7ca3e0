#include <windows.h>

#include <QAbstractNativeEventFilter>
#include <QCoreApplication>
#include <iostream>
#include <utility>

#include "app/wiring/process.h"
#include "base/windows_text.h"
#include "platform/windows/native_window.h"

namespace velumar {

namespace {

// A program started from the menu or by a double click has none.
bool HasStandardError() {
  const HANDLE output = ::GetStdHandle(STD_ERROR_HANDLE);
  return output != nullptr && output != INVALID_HANDLE_VALUE &&
         ::GetFileType(output) != FILE_TYPE_UNKNOWN;
}

}  // namespace

std::optional<std::string> ChooseDisplay() { return std::nullopt; }

void ReportStartFailure(const std::string& why) {
  if (HasStandardError()) {
    std::cerr << "velumar: " << why << std::endl;
  } else {
    ::MessageBoxW(nullptr, WideText(why).c_str(), L"Velumar", MB_OK | MB_ICONERROR);
  }
}

// A log-out asks every window of every program; one answer is enough.
struct Termination::Watch : public QAbstractNativeEventFilter {
  explicit Watch(std::function<void()> request) : on_request(std::move(request)) {
    QCoreApplication::instance()->installNativeEventFilter(this);
  }
  ~Watch() override { QCoreApplication::instance()->removeNativeEventFilter(this); }
  Watch(const Watch&) = delete;
  Watch& operator=(const Watch&) = delete;

  bool nativeEventFilter(const QByteArray&, void* message, qintptr*) override {
    if (IsSessionEnd(message) && !std::exchange(asked, true)) on_request();
    return false;
  }

  std::function<void()> on_request;
  bool asked = false;
};

Termination::Termination(std::function<void()> on_request)
    : watch_(std::make_unique<Watch>(std::move(on_request))) {}

Termination::~Termination() = default;

}  // namespace velumar
