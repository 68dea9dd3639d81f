#include "planstore.h"

#include <QSqlError>
#include <QSqlQuery>
#include <QVariant>

#include "storedatabase.h"
#include "storevalues.h"

namespace NVB::Engine {

using namespace StoreValues;

namespace {

StoredPlan readPlan(const QSqlQuery& q)
{
    StoredPlan p;
    p.id = QUuid(q.value(0).toString());
    p.profile = q.value(1).toString();
    p.xml = q.value(2).toString();
    p.name = q.value(3).toString();
    p.type = q.value(4).toInt();
    p.subtype = q.value(5).toInt();
    p.storageId = QUuid(q.value(6).toString());
    p.status = q.value(7).toInt();
    p.lastResult = q.value(8).toInt();
    p.lastRunUtc = readStamp(q.value(9));
    p.lastDuration = q.value(10).toLongLong();
    p.lastFileCount = q.value(11).toLongLong();
    p.lastFileSize = q.value(12).toLongLong();
    p.lastUploadedCount = q.value(13).toLongLong();
    p.lastUploadedSize = q.value(14).toLongLong();
    p.lastFailedCount = q.value(15).toLongLong();
    p.lastMessage = q.value(16).toString();
    p.lastScheduledUtc = readStamp(q.value(17));
    return p;
}

const QString PlanColumns = QStringLiteral(
    "id, profile, xml, name, type, subtype, storage_id, status, last_result, last_run_utc, last_duration, "
    "last_file_count, last_file_size, last_uploaded_count, last_uploaded_size, last_failed_count, last_message, "
    "last_scheduled_utc");

} // namespace

PlanStore::PlanStore(StoreDatabase& database)
    : m_db(database)
{ }

bool PlanStore::savePlan(const StoredPlan& p)
{
    return m_db.transaction([&] {
        QSqlQuery q(m_db.database());
        q.prepare(QStringLiteral("INSERT INTO plans(%1) VALUES(?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?) "
                                 "ON CONFLICT(id) DO UPDATE SET profile=excluded.profile, xml=excluded.xml, "
                                 "name=excluded.name, type=excluded.type, subtype=excluded.subtype, "
                                 "storage_id=excluded.storage_id, status=excluded.status, "
                                 "last_result=excluded.last_result, last_run_utc=excluded.last_run_utc, "
                                 "last_duration=excluded.last_duration, last_file_count=excluded.last_file_count, "
                                 "last_file_size=excluded.last_file_size, "
                                 "last_uploaded_count=excluded.last_uploaded_count, "
                                 "last_uploaded_size=excluded.last_uploaded_size, "
                                 "last_failed_count=excluded.last_failed_count, last_message=excluded.last_message, "
                                 "last_scheduled_utc=excluded.last_scheduled_utc")
                      .arg(PlanColumns));
        for (const QVariant& value : {QVariant(text(p.id)), str(p.profile), str(p.xml), str(p.name), QVariant(p.type),
                 QVariant(p.subtype), QVariant(text(p.storageId)), QVariant(p.status), QVariant(p.lastResult),
                 stamp(p.lastRunUtc), QVariant(p.lastDuration), QVariant(p.lastFileCount), QVariant(p.lastFileSize),
                 QVariant(p.lastUploadedCount), QVariant(p.lastUploadedSize), QVariant(p.lastFailedCount),
                 str(p.lastMessage), stamp(p.lastScheduledUtc)})
            q.addBindValue(value);
        return q.exec() || m_db.fail(QStringLiteral("Cannot save the plan: %1").arg(q.lastError().text()));
    });
}

bool PlanStore::removePlan(const QUuid& id)
{
    return m_db.deleteById(
        QStringLiteral("plans"), id, QStringLiteral("plan"), QStringLiteral("No plan with the id %1"));
}

std::optional<StoredPlan> PlanStore::plan(const QUuid& id)
{
    QSqlQuery q(m_db.database());
    q.prepare(QStringLiteral("SELECT %1 FROM plans WHERE id=?").arg(PlanColumns));
    q.addBindValue(text(id));
    if (!q.exec()) {
        m_db.fail(q.lastError().text());
        return std::nullopt;
    }
    if (!q.next())
        return std::nullopt;
    return readPlan(q);
}

QList<StoredPlan> PlanStore::plans()
{
    QList<StoredPlan> result;
    QSqlQuery q(m_db.database());
    if (!q.exec(QStringLiteral("SELECT %1 FROM plans ORDER BY name, id").arg(PlanColumns))) {
        m_db.fail(q.lastError().text());
        return result;
    }
    while (q.next())
        result.append(readPlan(q));
    return result;
}

bool PlanStore::setPlanStatus(const QUuid& id, int status)
{
    return m_db.transaction([&] {
        QSqlQuery q(m_db.database());
        q.prepare(QStringLiteral("UPDATE plans SET status=? WHERE id=?"));
        q.addBindValue(status);
        q.addBindValue(text(id));
        return q.exec() || m_db.fail(q.lastError().text());
    });
}

bool PlanStore::setLastScheduled(const QUuid& id, const QDateTime& utc)
{
    return m_db.transaction([&] {
        QSqlQuery q(m_db.database());
        q.prepare(QStringLiteral("UPDATE plans SET last_scheduled_utc=? WHERE id=?"));
        q.addBindValue(stamp(utc));
        q.addBindValue(text(id));
        return q.exec() || m_db.fail(q.lastError().text());
    });
}

QList<QUuid> PlanStore::plansUsingAccount(const QUuid& accountId)
{
    QList<QUuid> result;
    QSqlQuery q(m_db.database());
    q.prepare(QStringLiteral("SELECT id FROM plans WHERE storage_id=?"));
    q.addBindValue(text(accountId));
    if (!q.exec())
        return result;
    while (q.next())
        result.append(QUuid(q.value(0).toString()));
    return result;
}

bool PlanStore::writeSummary(const StoredPlan& summary)
{
    QSqlQuery s(m_db.database());
    s.prepare(QStringLiteral("UPDATE plans SET status=?, last_result=?, last_run_utc=?, last_duration=?, "
                             "last_file_count=?, last_file_size=?, last_uploaded_count=?, last_uploaded_size=?, "
                             "last_failed_count=?, last_message=? WHERE id=?"));
    for (const QVariant& value : {QVariant(summary.status), QVariant(summary.lastResult), stamp(summary.lastRunUtc),
             QVariant(summary.lastDuration), QVariant(summary.lastFileCount), QVariant(summary.lastFileSize),
             QVariant(summary.lastUploadedCount), QVariant(summary.lastUploadedSize), QVariant(summary.lastFailedCount),
             str(summary.lastMessage), QVariant(text(summary.id))})
        s.addBindValue(value);
    return s.exec() || m_db.fail(QStringLiteral("Cannot update the plan's summary: %1").arg(s.lastError().text()));
}

bool PlanStore::setEveryStatus(int status)
{
    QSqlQuery p(m_db.database());
    p.prepare(QStringLiteral("UPDATE plans SET status=?"));
    p.addBindValue(status);
    return p.exec() || m_db.fail(p.lastError().text());
}

} // namespace NVB::Engine
