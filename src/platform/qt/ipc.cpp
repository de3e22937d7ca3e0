#include "platform/ipc.h"

#include <QCryptographicHash>
#include <QDir>
#include <QLocalServer>
#include <QLocalSocket>
#include <array>
#include <cstring>
#include <utility>

#include "base/paths.h"
#include "platform/user_files.h"

namespace velumar {

namespace {

constexpr int kPatienceMs = 100;
using Packet = std::array<char, sizeof(IpcMessage)>;

// The socket of a name on this user's display: ":0.0" and ":0" are the same one. Its path must be
// shorter than 108 bytes.
QString SocketOf(std::string_view name) {
  QString folder = qEnvironmentVariable("XDG_RUNTIME_DIR");
  if (folder.isEmpty()) {
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

class SocketListener : public MessageListener {
 public:
  explicit SocketListener(std::function<void(const IpcMessage&)> receive)
      : receive_(std::move(receive)) {
    server_.setSocketOptions(QLocalServer::UserAccessOption);
    QObject::connect(&server_, &QLocalServer::newConnection, &server_, [this] { TakeAll(); });
  }

  bool Listen(const QString& socket) {
    // One that was killed leaves its socket file.
    QLocalServer::removeServer(socket);
    return server_.listen(socket);
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
