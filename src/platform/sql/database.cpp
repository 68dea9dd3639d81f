#include "database.h"

#include <QFileInfo>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QUuid>

#include "core/apppath.h"
#include "core/nvldebug.h"
#include "stores/defaultsettings.h"

namespace NVB::SQL {

namespace {

// The engine keeps the store open; VACUUM waits this long for its lock.
constexpr int BusyTimeoutMs = 10000;

} // namespace

QString Database::connectionString()
{
    const QString configured = DefaultSettings::instance()->value(QStringLiteral("DatabasePath")).trimmed();
    if (!configured.isEmpty())
        return configured;
    return Defines::AppPath::to().data() + QStringLiteral("/nvbackup.db");
}

bool Database::shrink()
{
    return shrink(connectionString());
}

bool Database::shrink(const QString& filePath)
{
    const NVL::NvlDebug log(QStringLiteral("NVB"));
    // Opening a missing file would make an empty store where the engine
    // expects none.
    if (!QFileInfo(filePath).isFile()) {
        log.warning() << QStringLiteral("Cannot shrink %1: no such file").arg(filePath);
        return false;
    }
    const QString name = QStringLiteral("nvb-shrink-") + QUuid::createUuid().toString(QUuid::WithoutBraces);
    bool ok = false;
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), name);
        db.setDatabaseName(filePath);
        db.setConnectOptions(QStringLiteral("QSQLITE_BUSY_TIMEOUT=%1").arg(BusyTimeoutMs));
        if (!db.open()) {
            log.warning() << QStringLiteral("Cannot open %1 to shrink it: %2").arg(filePath, db.lastError().text());
        } else {
            QSqlQuery query(db);
            ok = query.exec(QStringLiteral("VACUUM"));
            if (!ok)
                log.warning() << QStringLiteral("Cannot shrink %1: %2").arg(filePath, query.lastError().text());
            db.close();
        }
    }
    QSqlDatabase::removeDatabase(name);
    return ok;
}

} // namespace NVB::SQL
