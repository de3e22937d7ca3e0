#include "app/wiring/single_instance.h"

#include <QCryptographicHash>
#include <QDeadlineTimer>
#include <QDir>
#include <QFileInfo>
#include <QThread>
#include <utility>

#include "platform/ipc.h"

namespace velumar {

namespace {

// The name under which the process that uses the folder listens.
std::string ListenerNameOf(const QString& folder) {
  const QFileInfo info(folder);
  const QString path = info.exists() ? info.canonicalFilePath() : info.absoluteFilePath();
  return "_VELUMAR_" +
         QCryptographicHash::hash(path.toUtf8(), QCryptographicHash::Sha1).toHex().toStdString();
}

std::filesystem::path LockOf(const QString& folder) {
  return QFileInfo(QDir(folder).filePath(QStringLiteral("running"))).filesystemFilePath();
}

QString CreatedDirectory(const QString& folder) {
  QDir().mkpath(folder);
  return folder;
}

}  // namespace

SingleInstance::SingleInstance(const QString& settings_folder)
    : listener_name_(ListenerNameOf(CreatedDirectory(settings_folder))),
      lock_(LockOf(settings_folder)) {
  // If the folder can't be locked, another Velumar is found by its listener.
  const bool unlocked = lock_.Held() == FileLock::State::kImpossible;
  first_ =
      lock_.Held() == FileLock::State::kHeld || (unlocked && !SendIpcMessage(listener_name_, {}));
}

// A process that has just started may not listen yet.
bool SingleInstance::CallOther() const {
  constexpr int kTimeoutMs = 3000;
  constexpr int kIntervalMs = 100;
  const QDeadlineTimer timeout(kTimeoutMs);
  while (!SendIpcMessage(listener_name_, {})) {
    if (timeout.hasExpired()) return false;
    QThread::msleep(kIntervalMs);
  }
  return true;
}

void SingleInstance::Listen(std::function<void()> come) {
  listener_ =
      ListenForMessages(listener_name_, [come = std::move(come)](const IpcMessage&) { come(); });
}

}  // namespace velumar
