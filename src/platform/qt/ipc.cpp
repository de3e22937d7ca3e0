#include "platform/ipc.h"

#include <sys/stat.h>
#include <unistd.h>

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLocalServer>
#include <QLocalSocket>
#include <array>
#include <cstdio>
#include <cstring>
#include <optional>
#include <utility>

#include "base/paths.h"
#include "platform/user_files.h"

namespace velumar {

namespace {

constexpr int kPatienceMs = 100;
constexpr int kWaitingMessages = 1000;  // ipc.h names this limit
using Packet = std::array<char, sizeof(IpcMessage)>;

// The socket of a name on this user's display: ":0.0" and ":0" are the same one. Its path must be
// shorter than 108 bytes.
QString SocketOf(std::string_view name) {
  QString folder = qEnvironmentVariable("XDG_RUNTIME_DIR");
  if (folder.isEmpty() || !QFileInfo(folder).isWritable()) {
    folder = QString::fromStdString(PathText(UserFile("").parent_path()));
    QDir().mkpath(folder);
  }
  const QByteArray display = qgetenv("DISPLAY");
  const qsizetype screen = display.indexOf('.', std::max<qsizetype>(display.lastIndexOf(':'), 0));
  const QByteArray key =
      QByteArray(name.data(), static_cast<qsizetype>(name.size())) + '\n' + display.left(screen);
  const QByteArray hash = QCryptographicHash::hash(key, QCryptographicHash::Sha1).toHex();
  return folder + QStringLiteral("/velumar-") + QString::fromLatin1(hash.left(16));
}

// Devices and inodes say whether two files are the same.
std::optional<std::pair<dev_t, ino_t>> FileIdentity(const QString& file) {
  struct stat status {};
  if (::stat(QFile::encodeName(file).constData(), &status) != 0) return std::nullopt;
  return std::pair(status.st_dev, status.st_ino);
}

class SocketListener : public MessageListener {
 public:
  explicit SocketListener(std::function<void(const IpcMessage&)> receive)
      : receive_(std::move(receive)) {
    server_.setSocketOptions(QLocalServer::UserAccessOption);
    server_.setListenBacklogSize(kWaitingMessages);
    QObject::connect(&server_, &QLocalServer::newConnection, &server_, [this] { TakeAll(); });
  }

  ~SocketListener() override {
    // A later listener may have taken the name.
    if (identity_ && FileIdentity(socket_) == identity_) QFile::remove(socket_);
  }

  // Listens under a name of its own first and renames that file, which replaces what an earlier
  // listener or one that was killed left. QLocalServer would remove the file of a later listener
  // when it closes; it knows only the first name.
  bool Listen(const QString& socket) {
    const QString own = socket + u'-' + QString::number(::getpid());
    QLocalServer::removeServer(own);
    if (!server_.listen(own)) return false;
    identity_ = FileIdentity(own);
    socket_ = socket;
    return std::rename(QFile::encodeName(own).constData(), QFile::encodeName(socket).constData()) ==
           0;
  }

 private:
  // A sender writes as soon as it is connected. Reading each connection to its end before the next
  // one keeps the order.
  void TakeAll() {
    while (const std::unique_ptr<QLocalSocket> sender{server_.nextPendingConnection()}) {
      Packet packet;
      while (sender->bytesAvailable() < static_cast<qint64>(packet.size()) &&
             sender->waitForReadyRead(kPatienceMs)) {
      }
      if (sender->read(packet.data(), packet.size()) != static_cast<qint64>(packet.size())) {
        continue;
      }
      IpcMessage message;
      std::memcpy(&message, packet.data(), packet.size());
      receive_(message);
    }
  }

  std::function<void(const IpcMessage&)> receive_;
  QLocalServer server_;
  QString socket_;
  std::optional<std::pair<dev_t, ino_t>> identity_;
};

}  // namespace

bool SendIpcMessage(std::string_view name, const IpcMessage& message) {
  QLocalSocket socket;
  socket.connectToServer(SocketOf(name), QIODevice::WriteOnly);
  if (!socket.waitForConnected(kPatienceMs)) return false;
  Packet packet;
  std::memcpy(packet.data(), &message, packet.size());
  socket.write(packet.data(), packet.size());
  return socket.flush() || socket.bytesToWrite() == 0;
}

std::unique_ptr<MessageListener> ListenForMessages(std::string_view name,
                                                   std::function<void(const IpcMessage&)> receive) {
  auto listener = std::make_unique<SocketListener>(std::move(receive));
  if (!listener->Listen(SocketOf(name))) return nullptr;
  return listener;
}

}  // namespace velumar
