#include "platform/ipc.h"

#include <sys/stat.h>
#include <unistd.h>

#include <QCryptographicHash>
#include <QDeadlineTimer>
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

constexpr std::chrono::milliseconds kPatience{100};
constexpr std::chrono::milliseconds kTextPatience{500};
constexpr int kWaitingMessages = 1000;  // ipc.h names this limit

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
  // Reads what one sender sends, and answers it.
  using Receive = std::function<void(QLocalSocket& sender)>;

  explicit SocketListener(Receive receive) : receive_(std::move(receive)) {
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
      receive_(*sender);
    }
  }

  Receive receive_;
  QLocalServer server_;
  QString socket_;
  std::optional<std::pair<dev_t, ino_t>> identity_;
};

// Waits until so many bytes have arrived. A sender that is slow or has gone gets no patience.
bool HasArrived(QLocalSocket& socket, qint64 size, std::chrono::milliseconds patience) {
  const QDeadlineTimer deadline(patience);
  while (socket.bytesAvailable() < size) {
    const auto left = static_cast<int>(deadline.remainingTime());
    if (left <= 0 || !socket.waitForReadyRead(left)) return socket.bytesAvailable() >= size;
  }
  return true;
}

template <typename T>
std::optional<T> ReadNumbers(QLocalSocket& socket, std::chrono::milliseconds patience) {
  std::array<char, sizeof(T)> bytes;
  if (!HasArrived(socket, bytes.size(), patience)) return std::nullopt;
  socket.read(bytes.data(), bytes.size());
  T numbers;
  std::memcpy(&numbers, bytes.data(), bytes.size());
  return numbers;
}

template <typename T>
void WriteNumbers(QLocalSocket& socket, const T& numbers) {
  socket.write(reinterpret_cast<const char*>(&numbers), sizeof numbers);
}

// A request is its length in bytes and its text; the answer is 1 or 0.
std::optional<QByteArray> ReadRequest(QLocalSocket& sender) {
  const auto length = ReadNumbers<std::uint32_t>(sender, kPatience);
  if (!length || *length > kLongestIpcRequest) return std::nullopt;
  if (!HasArrived(sender, *length, kTextPatience)) return std::nullopt;
  return sender.read(*length);
}

std::unique_ptr<MessageListener> Listen(std::string_view name, SocketListener::Receive receive) {
  auto listener = std::make_unique<SocketListener>(std::move(receive));
  if (!listener->Listen(SocketOf(name))) return nullptr;
  return listener;
}

}  // namespace

bool SendIpcMessage(std::string_view name, const IpcMessage& message) {
  QLocalSocket socket;
  socket.connectToServer(SocketOf(name), QIODevice::WriteOnly);
  if (!socket.waitForConnected(kPatience.count())) return false;
  WriteNumbers(socket, message);
  return socket.flush() || socket.bytesToWrite() == 0;
}

std::unique_ptr<MessageListener> ListenForMessages(std::string_view name,
                                                   std::function<void(const IpcMessage&)> receive) {
  return Listen(name, [receive = std::move(receive)](QLocalSocket& sender) {
    if (const auto message = ReadNumbers<IpcMessage>(sender, kPatience)) receive(*message);
  });
}

IpcAnswer SendIpcRequest(std::string_view name, std::string_view text,
                         std::chrono::milliseconds patience) {
  if (text.size() > kLongestIpcRequest) return IpcAnswer::kRefused;
  QLocalSocket socket;
  socket.connectToServer(SocketOf(name));
  if (!socket.waitForConnected(kPatience.count())) {
    // A listener that hangs takes no more requests once too many wait for it.
    const bool full = socket.state() == QLocalSocket::ConnectingState;
    return full ? IpcAnswer::kNone : IpcAnswer::kNobodyListens;
  }
  WriteNumbers(socket, static_cast<std::uint32_t>(text.size()));
  socket.write(text.data(), static_cast<qint64>(text.size()));
  const auto accepted = ReadNumbers<std::uint32_t>(socket, patience);
  if (!accepted) return IpcAnswer::kNone;
  return *accepted == 0 ? IpcAnswer::kRefused : IpcAnswer::kAccepted;
}

std::unique_ptr<MessageListener> ListenForRequests(std::string_view name,
                                                   std::function<bool(std::string_view)> accepts) {
  return Listen(name, [accepts = std::move(accepts)](QLocalSocket& sender) {
    const std::optional<QByteArray> request = ReadRequest(sender);
    if (!request) return;
    const bool accepted =
        accepts({request->constData(), static_cast<std::size_t>(request->size())});
    WriteNumbers(sender, std::uint32_t{accepted});
    sender.waitForBytesWritten(kPatience.count());
  });
}

}  // namespace velumar
