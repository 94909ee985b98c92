#include "shell/singleinstance.h"

#include <QCryptographicHash>
#include <QFileInfo>
#include <QLocalServer>
#include <QLocalSocket>

namespace tarvel {

namespace {
constexpr int kWaitMs = 1000;
const QByteArray kRaise = QByteArrayLiteral("raise\n");
}  // namespace

SingleInstance::SingleInstance(const QString& dataFile, QObject* parent)
    : QObject(parent), name_(socketName(dataFile)) {}

SingleInstance::~SingleInstance() = default;

QString SingleInstance::socketName(const QString& dataFile) {
    const QFileInfo info(dataFile);
    const QString path = info.exists() ? info.canonicalFilePath() : info.absoluteFilePath();
    return QStringLiteral("tarvel-") +
           QString::fromLatin1(
               QCryptographicHash::hash(path.toUtf8(), QCryptographicHash::Sha1).toHex().left(16));
}

bool SingleInstance::askRunningWindow() {
    QLocalSocket socket;
    socket.connectToServer(name_);
    if (!socket.waitForConnected(kWaitMs)) return false;
    socket.write(kRaise);
    socket.waitForBytesWritten(kWaitMs);
    socket.disconnectFromServer();
    return true;
}

bool SingleInstance::listen(std::function<void()> raise) {
    server_ = new QLocalServer(this);
    // Only this user's programs may ask.
    server_->setSocketOptions(QLocalServer::UserAccessOption);
    if (!server_->listen(name_)) {
        // A socket left by a window that crashed: nobody answers on it.
        QLocalServer::removeServer(name_);
        if (!server_->listen(name_)) return false;
    }
    connect(server_, &QLocalServer::newConnection, this, [this, raise = std::move(raise)] {
        while (QLocalSocket* socket = server_->nextPendingConnection()) {
            connect(socket, &QLocalSocket::readyRead, socket, [socket, raise] {
                if (socket->readAll().contains("raise") && raise) raise();
            });
            connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
        }
    });
    return true;
}

}  // namespace tarvel
