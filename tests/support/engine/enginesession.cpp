#include "enginesession.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QJsonDocument>
#include <QTest>

#include "service/connectionmanager.h"
#include "service/notification/format.h"
#include "service/notificationcenter.h"
#include "synccommand.h"

namespace NvbTest {

namespace Format = NVB::Common::Communication::Notification::Format;

EngineSession::EngineSession(const QString& home, QObject* parent)
    : QObject(parent)
    , m_engine(home)
{ }

EngineSession::~EngineSession() = default;

bool EngineSession::start()
{
    if (!m_engine.start()) {
        m_error = QString::fromLocal8Bit(m_engine.output());
        return false;
    }
    m_engine.exportSocketPath();
    connect(NVB::Common::Communication::NotificationCenter::instance(),
        &NVB::Common::Communication::NotificationCenter::notification, this,
        [this](const QJsonDocument& document) { m_notifications.append(document.object()); });
    const auto connection = NVB::Common::Communication::ConnectionManager::instance();
    if (!QTest::qWaitFor([&] { return connection && connection->isLocalManagmentConnected(); }, 10000)) {
        m_error = QStringLiteral("the console never connected to the engine");
        return false;
    }
    if (!saveDiskAccount(m_account, m_storage.path(), QStringLiteral("tester"))) {
        m_error = QStringLiteral("saving the account failed");
        return false;
    }
    return true;
}

bool EngineSession::stop()
{
    return !m_engine.isRunning() || m_engine.stop();
}

QString EngineSession::planFolder(const QUuid& plan) const
{
    return m_storage.path() + QStringLiteral("/NVB_tester/") + plan.toString(QUuid::WithoutBraces);
}

bool EngineSession::saveDiskAccount(const QUuid& id, const QString& path, const QString& prefix)
{
    const auto saved = SyncCommand::run(QStringLiteral("SaveStorage"),
        {{QStringLiteral("ID"), id.toString()}, {QStringLiteral("displayName"), QStringLiteral("Local disk")},
            {QStringLiteral("type"), 1}, {QStringLiteral("prefix"), prefix},
            {QStringLiteral("params"), QJsonObject {{QStringLiteral("Path"), path + QLatin1Char('/')}}}});
    return saved.answered && !saved.isError
        && saved.data.value(QStringLiteral("SaveStorage")).toString() == QLatin1String("success");
}

bool EngineSession::savePlan(const QUuid& id, const QString& xml)
{
    const auto reply = SyncCommand::run(QStringLiteral("CommonPlanEdit"),
        {{QStringLiteral("ID"), id.toString()}, {QStringLiteral("planXML"), xml},
            {QStringLiteral("profile"), QStringLiteral("tester")}});
    return reply.answered && !reply.isError;
}

bool EngineSession::run(const QUuid& plan, bool forceFull, bool verify)
{
    m_notifications.clear();
    QJsonObject params {{QStringLiteral("ID"), plan.toString()}};
    if (forceFull)
        params.insert(QStringLiteral("force_full"), true);
    if (verify)
        params.insert(QStringLiteral("verify"), true);
    const auto reply = SyncCommand::run(QStringLiteral("PlanExecuteStart"), params);
    return reply.answered && !reply.isError && waitForState(plan, 2);
}

bool EngineSession::waitForState(const QUuid& plan, int state, int timeoutMs) const
{
    return QTest::qWaitFor(
        [&] {
            for (const QJsonObject& note : m_notifications) {
                const QJsonObject message = note.value(QLatin1String(Format::Header::Message)).toObject();
                if (QUuid(note.value(QLatin1String(Format::Header::Type)).toString()) == Format::Plan::StateChange::Type
                    && QUuid(message.value(QStringLiteral("id")).toString()) == plan
                    && message.value(QStringLiteral("state")).toInt() == state)
                    return true;
            }
            return false;
        },
        timeoutMs);
}

QJsonObject EngineSession::info(const QUuid& plan) const
{
    return SyncCommand::run(QStringLiteral("PlanGetInfo"), {{QStringLiteral("id"), plan.toString()}})
        .data.value(QStringLiteral("planInfo"))
        .toObject();
}

int EngineSession::lastStatus(const QUuid& plan) const
{
    return info(plan).value(QStringLiteral("LastRunStatus")).toInt(-1);
}

int EngineSession::notificationsOf(const QUuid& type) const
{
    int count = 0;
    for (const QJsonObject& note : m_notifications)
        count += QUuid(note.value(QLatin1String(Format::Header::Type)).toString()) == type ? 1 : 0;
    return count;
}

bool EngineSession::write(const QString& path, const QByteArray& data)
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(data) == data.size();
}

QMap<QString, QByteArray> EngineSession::tree(const QString& root)
{
    QMap<QString, QByteArray> files;
    QDirIterator it(root, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (it.hasNext()) {
        QFile file(it.next());
        if (file.open(QIODevice::ReadOnly))
            files.insert(it.filePath().mid(root.size()), file.readAll());
    }
    return files;
}

} // namespace NvbTest
