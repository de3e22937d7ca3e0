#include "app/wiring/single_instance.h"

#include <QCryptographicHash>
#include <QDeadlineTimer>
#include <QDir>
#include <QFileInfo>
#include <QThread>
#include <utility>

#include "platform/mailbox.h"

namespace velumar {

namespace {

// A name for the folder that any desktop's mailboxes take.
std::string MailboxOf(const QString& folder) {
  const QFileInfo info(folder);
  const QString path = info.exists() ? info.canonicalFilePath() : info.absoluteFilePath();
  return "_VELUMAR_" +
         QCryptographicHash::hash(path.toUtf8(), QCryptographicHash::Sha1).toHex().toStdString();
}

std::filesystem::path LockOf(const QString& folder) {
  return QFileInfo(QDir(folder).filePath(QStringLiteral("running"))).filesystemFilePath();
}

QString Made(const QString& folder) {
  QDir().mkpath(folder);
  return folder;
}

}  // namespace

SingleInstance::SingleInstance(const QString& settings_folder)
    : mailbox_(MailboxOf(Made(settings_folder))), lock_(LockOf(settings_folder)) {
  // Where the folder can't be locked, another Velumar is found by its mailbox.
  const bool unlocked = lock_.Held() == FileLock::State::kImpossible;
  first_ = lock_.Held() == FileLock::State::kHeld || (unlocked && !PostMail(mailbox_, {}));
}

// One that is only just starting opens its mailbox in a moment.
bool SingleInstance::CallOther() const {
  constexpr int kPatienceMs = 3000;
  constexpr int kLookMs = 100;
  const QDeadlineTimer patience(kPatienceMs);
  while (!PostMail(mailbox_, {})) {
    if (patience.hasExpired()) return false;
    QThread::msleep(kLookMs);
  }
  return true;
}

void SingleInstance::Listen(std::function<void()> come) {
  notice_ = OpenMailbox(mailbox_, [come = std::move(come)](const Mail&) { come(); });
}

void ReleasingPrograms::EndProcess() {
  instance_.Release();
  programs_.EndProcess();
}

}  // namespace velumar
