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

// A log-out asks every window of every program; one answer is enough.
class LogOutWatch : public QObject, public QAbstractNativeEventFilter {
 public:
  explicit LogOutWatch(std::function<void()> on_request) : on_request_(std::move(on_request)) {
    QCoreApplication::instance()->installNativeEventFilter(this);
  }
  ~LogOutWatch() override { QCoreApplication::instance()->removeNativeEventFilter(this); }
  LogOutWatch(const LogOutWatch&) = delete;
  LogOutWatch& operator=(const LogOutWatch&) = delete;

  bool nativeEventFilter(const QByteArray&, void* message, qintptr*) override {
    if (IsSessionEnd(message) && !std::exchange(asked_, true)) on_request_();
    return false;
  }

 private:
  std::function<void()> on_request_;
  bool asked_ = false;
};

}  // namespace

std::optional<std::string> ChooseDisplay() { return std::nullopt; }

void ReportStartFailure(const std::string& why) {
  if (HasStandardError()) {
    std::cerr << "velumar: " << why << std::endl;
  } else {
    ::MessageBoxW(nullptr, WideText(why).c_str(), L"Velumar", MB_OK | MB_ICONERROR);
  }
}

std::unique_ptr<QObject> WatchForTermination(std::function<void()> on_request) {
  return std::make_unique<LogOutWatch>(std::move(on_request));
}

}  // namespace velumar
