#include "app/single_instance.h"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QSysInfo>
#include <QThread>
#include <utility>

#include "platform/mailbox.h"

namespace velumar {

namespace {

// A name for the folder that any desktop's mailboxes take.
std::string MailboxOf(const QString& folder) {
  const QByteArray path = QDir(folder).canonicalPath().toUtf8();
  return "_VELUMAR_" +
         QCryptographicHash::hash(path, QCryptographicHash::Sha1).toHex().toStdString();
}

QString LockOf(const QString& folder) { return QDir(folder).filePath(QStringLiteral("running")); }

// After a crash or a power cut the process number in the lock may be given to us: nobody else has
// it.
bool NamesThisProcess(const QLockFile& lock) {
  qint64 process = 0;
  QString host;
  QString program;
  return lock.getLockInfo(&process, &host, &program) && host == QSysInfo::machineHostName() &&
         process == QCoreApplication::applicationPid();
}

QString Made(const QString& folder) {
  QDir().mkpath(folder);
  return folder;
}

}  // namespace

SingleInstance::SingleInstance(const QString& settings_folder)
    : mailbox_(MailboxOf(Made(settings_folder))), lock_(LockOf(settings_folder)) {
  lock_.setStaleLockTime(0);  // a process that lives keeps it, however long
  // A folder that can't be written can't be written over by two either.
  if (NamesThisProcess(lock_)) QFile::remove(LockOf(settings_folder));
  first_ = lock_.tryLock(0) || lock_.error() != QLockFile::LockFailedError;
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

}  // namespace velumar
