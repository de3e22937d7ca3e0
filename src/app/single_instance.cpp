#include "app/single_instance.h"

#include <QCryptographicHash>
#include <QDir>
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

QString Made(const QString& folder) {
  QDir().mkpath(folder);
  return folder;
}

}  // namespace

SingleInstance::SingleInstance(const QString& settings_folder)
    : mailbox_(MailboxOf(Made(settings_folder))),
      lock_(QDir(settings_folder).filePath(QStringLiteral("running"))) {
  lock_.setStaleLockTime(0);  // a process that lives keeps it, however long
  // A folder that can't be written can't be written over by two either.
  first_ = lock_.tryLock(0) || lock_.error() != QLockFile::LockFailedError;
}

bool SingleInstance::CallOther() const { return PostMail(mailbox_, {}); }

void SingleInstance::Listen(std::function<void()> come) {
  notice_ = OpenMailbox(mailbox_, [come = std::move(come)](const Mail&) { come(); });
}

}  // namespace velumar
