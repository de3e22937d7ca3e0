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

// The name of the mailbox of the process that uses the folder.
std::string MailboxOf(const QString& folder) {
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
    : mailbox_(MailboxOf(CreatedDirectory(settings_folder))), lock_(LockOf(settings_folder)) {
  // If the folder can't be locked, another Velumar is found by its mailbox.
  const bool unlocked = lock_.Held() == FileLock::State::kImpossible;
  first_ = lock_.Held() == FileLock::State::kHeld || (unlocked && !SendIpcMessage(mailbox_, {}));
}

// A process that has just started may not have opened its mailbox yet.
bool SingleInstance::CallOther() const {
  constexpr int kTimeoutMs = 3000;
  constexpr int kIntervalMs = 100;
  const QDeadlineTimer timeout(kTimeoutMs);
  while (!SendIpcMessage(mailbox_, {})) {
    if (timeout.hasExpired()) return false;
    QThread::msleep(kIntervalMs);
  }
  return true;
}

void SingleInstance::Listen(std::function<void()> come) {
  listener_ = ListenForMessages(mailbox_, [come = std::move(come)](const IpcMessage&) { come(); });
}

}  // namespace velumar
