#include "SingleInstance.h"

#include <QDir>
#include <QLocalServer>
#include <QLocalSocket>
#include <QLockFile>
#include <QStandardPaths>

#include <unistd.h>

namespace kestrum::app {

SingleInstance::SingleInstance(const QString& key, QObject* parent) : QObject(parent), m_key(key) {}

SingleInstance::~SingleInstance() = default;

QString SingleInstance::serverName() const
{
    return QStringLiteral("%1-%2").arg(m_key).arg(getuid());
}

bool SingleInstance::claim()
{
    QString folder = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
    if (folder.isEmpty()) {
        folder = QDir::tempPath();
    }
    m_lock =
        std::make_unique<QLockFile>(QDir(folder).filePath(serverName() + QStringLiteral(".lock")));
    m_lock->setStaleLockTime(0); // a lock left by a crash is taken over
    if (!m_lock->tryLock(100)) {
        return false;
    }
    QLocalServer::removeServer(serverName());
    m_server = new QLocalServer(this);
    m_server->setSocketOptions(QLocalServer::UserAccessOption);
    connect(m_server, &QLocalServer::newConnection, this, [this] {
        while (QLocalSocket* socket = m_server->nextPendingConnection()) {
            connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
            connect(socket, &QLocalSocket::readyRead, socket, [this, socket] {
                if (!socket->canReadLine()) {
                    return;
                }
                QStringList files;
                while (socket->canReadLine()) {
                    const QString line = QString::fromUtf8(socket->readLine()).trimmed();
                    if (!line.isEmpty()) {
                        files << line;
                    }
                }
                socket->write("ok\n");
                socket->flush();
                // Announced from the event loop, not from this handler: opening the file may
                // run a message box's loop, in which the socket can go away.
                QMetaObject::invokeMethod(
                    this, [this, files] { emit filesReceived(files); }, Qt::QueuedConnection);
            });
        }
    });
    m_server->listen(serverName());
    return true;
}

bool SingleInstance::handOver(const QStringList& files) const
{
    QLocalSocket socket;
    socket.connectToServer(serverName());
    if (!socket.waitForConnected(2000)) {
        return false;
    }
    QByteArray message;
    for (const QString& f : files) {
        message += QDir::current().absoluteFilePath(f).toUtf8() + '\n';
    }
    if (message.isEmpty()) {
        message = "\n";
    }
    socket.write(message);
    socket.flush();
    return socket.waitForReadyRead(3000) && socket.readLine().startsWith("ok");
}

} // namespace kestrum::app
