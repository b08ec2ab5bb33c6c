#pragma once

#include <QObject>
#include <QStringList>

#include <memory>

class QLocalServer;
class QLockFile;

namespace kestrum::app {

// The marker of a running Kestrum ("Kestrum"): the first instance holds a lock and listens; a
// later one hands its file names over and stops.
class SingleInstance : public QObject
{
    Q_OBJECT
public:
    explicit SingleInstance(const QString& key, QObject* parent = nullptr);
    ~SingleInstance() override;

    // True when this process is the first; it then listens for the others.
    bool claim();
    // Sends the files to the running instance; true when it took them.
    bool handOver(const QStringList& files) const;

signals:
    void filesReceived(const QStringList& files);

private:
    QString serverName() const;

    QString m_key;
    std::unique_ptr<QLockFile> m_lock;
    QLocalServer* m_server = nullptr;
};

} // namespace kestrum::app
