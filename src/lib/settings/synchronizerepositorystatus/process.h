#pragma once

#include <QJsonDocument>
#include <QObject>
#include <QSharedPointer>
#include <QUuid>

namespace NVB::Common::Communication::V2 {
class NotificationMessage;
}

namespace NVB::GUI::SynchronizeRepositoryStatus {

// One synchronisation of a storage's repository, as the console follows it:
// asks the engine to start or cancel it and turns the engine's
// notifications for that connection into signals. The start comes by V1;
// status, errors and the end come by V2, whose error carries the list of
// what was recorded only in part.
class Process : public QObject
{
    Q_OBJECT
public:
    explicit Process(const QUuid& connectionId, QObject* parent = nullptr);

    QUuid connectionId() const { return m_connectionId; }
    bool isRunning() const { return m_running; }

public slots:
    void start();
    void cancel();

signals:
    void started();
    void status(const QString& message);
    // The engine refused the request or the synchronisation failed.
    void error(const QString& message);
    void finished();

private slots:
    void onNotification(const QJsonDocument& document);
    void onNotificationV2(QSharedPointer<NVB::Common::Communication::V2::NotificationMessage> message);
    void onStartReply();
    void onCancelReply();

private:
    void send(const char* name, void (Process::*reply)());

    QUuid m_connectionId;
    bool m_running = false;
};

} // namespace NVB::GUI::SynchronizeRepositoryStatus
