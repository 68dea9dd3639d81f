#include "storedatabase.h"

#include <QDir>
#include <QFileInfo>
#include <QSqlError>
#include <QSqlQuery>
#include <QUuid>
#include <QVariant>

#include "storemigrations.h"
#include "storevalues.h"

namespace NVB::Engine {

StoreDatabase::StoreDatabase()
    : m_connectionName(QStringLiteral("nvbengine-%1").arg(QUuid::createUuid().toString(QUuid::Id128)))
{ }

StoreDatabase::~StoreDatabase()
{
    close();
}

bool StoreDatabase::fail(const QString& message)
{
    m_lastError = message;
    return false;
}

QSqlDatabase StoreDatabase::database() const
{
    return QSqlDatabase::database(m_connectionName, false);
}

bool StoreDatabase::isOpen() const
{
    return QSqlDatabase::contains(m_connectionName) && database().isOpen();
}

bool StoreDatabase::open(const QString& filePath)
{
    close();
    m_filePath = filePath;
    QDir().mkpath(QFileInfo(filePath).absolutePath());
    QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), m_connectionName);
    db.setDatabaseName(filePath);
    db.setConnectOptions(QStringLiteral("QSQLITE_BUSY_TIMEOUT=5000"));
    if (!db.open())
        return fail(QStringLiteral("Cannot open the store %1: %2").arg(filePath, db.lastError().text()));
    if (!exec(QStringLiteral("PRAGMA journal_mode=WAL")) || !exec(QStringLiteral("PRAGMA foreign_keys=ON"))
        || !exec(QStringLiteral("PRAGMA synchronous=NORMAL")))
        return false;
    return StoreMigrations::apply(*this);
}

void StoreDatabase::close()
{
    if (!QSqlDatabase::contains(m_connectionName))
        return;
    {
        QSqlDatabase db = database();
        db.close();
    }
    QSqlDatabase::removeDatabase(m_connectionName);
}

bool StoreDatabase::exec(const QString& statement)
{
    QSqlQuery query(database());
    if (!query.exec(statement))
        return fail(QStringLiteral("%1: %2").arg(statement.left(60), query.lastError().text()));
    return true;
}

int StoreDatabase::userVersion()
{
    QSqlQuery version(database());
    if (!version.exec(QStringLiteral("PRAGMA user_version")) || !version.next()) {
        fail(QStringLiteral("Cannot read the store's version: %1").arg(version.lastError().text()));
        return -1;
    }
    return version.value(0).toInt();
}

bool StoreDatabase::transaction(const std::function<bool()>& work, bool durable)
{
    QSqlDatabase db = database();
    if (!db.isOpen())
        return fail(QStringLiteral("The store is not open"));
    // The setting holds for the connection, so it is raised around this one
    // commit only.
    if (durable && !exec(QStringLiteral("PRAGMA synchronous=FULL")))
        return false;
    const auto lower = [this, durable] {
        if (durable)
            exec(QStringLiteral("PRAGMA synchronous=NORMAL"));
    };
    if (!db.transaction()) {
        lower();
        return fail(QStringLiteral("Cannot begin a transaction: %1").arg(db.lastError().text()));
    }
    if (!work()) {
        db.rollback();
        lower();
        return false;
    }
    if (!db.commit()) {
        const QString reason = db.lastError().text();
        db.rollback();
        lower();
        return fail(QStringLiteral("Cannot commit: %1").arg(reason));
    }
    lower();
    return true;
}

bool StoreDatabase::deleteById(const QString& table, const QUuid& id, const QString& what, const QString& missing)
{
    return transaction([&] {
        QSqlQuery q(database());
        q.prepare(QStringLiteral("DELETE FROM %1 WHERE id=?").arg(table));
        q.addBindValue(StoreValues::text(id));
        if (!q.exec())
            return fail(QStringLiteral("Cannot remove the %1: %2").arg(what, q.lastError().text()));
        return q.numRowsAffected() > 0 || fail(missing.arg(StoreValues::text(id)));
    });
}

} // namespace NVB::Engine
