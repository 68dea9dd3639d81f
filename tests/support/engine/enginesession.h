#pragma once

#include <QJsonObject>
#include <QList>
#include <QMap>
#include <QObject>
#include <QTemporaryDir>
#include <QUuid>

#include "engineprocess.h"

namespace NvbTest {

// The real engine with one local-disk account ("tester") already saved, and
// the console's channel connected to it: what every suite that runs plans
// through the engine needs before its first case.
class EngineSession : public QObject
{
    Q_OBJECT
public:
    explicit EngineSession(const QString& home = QString(), QObject* parent = nullptr);
    ~EngineSession() override;

    // Starts the engine, connects and saves the account; false with the
    // reason in error() when any step fails.
    bool start();
    bool stop();
    QString error() const { return m_error; }

    EngineProcess& engine() { return m_engine; }
    QUuid account() const { return m_account; }
    QString storagePath() const { return m_storage.path(); }
    // Where the plan's objects land on the account.
    QString planFolder(const QUuid& plan) const;

    // A further File System account on a folder of the caller's.
    bool saveDiskAccount(const QUuid& id, const QString& path, const QString& prefix);
    bool savePlan(const QUuid& id, const QString& xml);
    // Starts the plan and waits until its state goes back to idle.
    bool run(const QUuid& plan, bool forceFull = false, bool verify = false);
    bool waitForState(const QUuid& plan, int state, int timeoutMs = 60000) const;
    QJsonObject info(const QUuid& plan) const;
    int lastStatus(const QUuid& plan) const;

    const QList<QJsonObject>& notifications() const { return m_notifications; }
    int notificationsOf(const QUuid& type) const;

    static bool write(const QString& path, const QByteArray& data);
    // Every file below root, by its path relative to root.
    static QMap<QString, QByteArray> tree(const QString& root);

private:
    EngineProcess m_engine;
    QTemporaryDir m_storage;
    QUuid m_account = QUuid::createUuid();
    QList<QJsonObject> m_notifications;
    QString m_error;
};

} // namespace NvbTest
