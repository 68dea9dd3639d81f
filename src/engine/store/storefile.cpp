#include "storefile.h"

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QUuid>
#include <QVariant>

#include "enginestore.h"

namespace NVB::Engine {

namespace {

const QStringList Companions {QStringLiteral("-wal"), QStringLiteral("-shm")};

QString systemError()
{
    return QString::fromLocal8Bit(std::strerror(errno));
}

bool syncFolder(const QString& folder)
{
    const int fd = ::open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (fd < 0)
        return false;
    const bool ok = ::fsync(fd) == 0;
    ::close(fd);
    return ok;
}

} // namespace

QString StoreFile::location(const QString& dataFolder, const QString& configuredPath)
{
    const QString configured = configuredPath.trimmed();
    return configured.isEmpty() ? dataFolder + QLatin1Char('/') + fileName() : configured;
}

bool StoreFile::adoptOldName(const QString& dataFolder, QString* error)
{
    const QString now = dataFolder + QLatin1Char('/') + fileName();
    const QString old = dataFolder + QStringLiteral("/engine.db");
    if (QFileInfo::exists(now) || !QFileInfo::exists(old))
        return true;
    for (const QString& suffix : Companions + QStringList {QString()}) {
        if (!QFileInfo::exists(old + suffix))
            continue;
        QFile::remove(now + suffix);
        if (::rename(QFile::encodeName(old + suffix).constData(), QFile::encodeName(now + suffix).constData()) != 0) {
            *error
                = QStringLiteral("Cannot rename the store %1 to %2: %3").arg(old + suffix, now + suffix, systemError());
            return false;
        }
    }
    syncFolder(dataFolder);
    return true;
}

StoreFile::Census StoreFile::census(const QString& connectionName)
{
    Census result;
    const QSqlDatabase db = QSqlDatabase::database(connectionName, false);
    QSqlQuery query(db);
    if (!query.exec(QStringLiteral("PRAGMA integrity_check")) || !query.next()
        || query.value(0).toString() != QLatin1String("ok")) {
        result.problem = QStringLiteral("the integrity check failed");
        return result;
    }
    if (query.exec(QStringLiteral("PRAGMA user_version")) && query.next())
        result.version = query.value(0).toInt();
    QStringList tables;
    if (query.exec(QStringLiteral("SELECT name FROM sqlite_master WHERE type='table' AND name NOT LIKE 'sqlite_%'"))) {
        while (query.next())
            tables << query.value(0).toString();
    }
    for (const QString& table : std::as_const(tables)) {
        QSqlQuery count(db);
        if (!count.exec(QStringLiteral("SELECT COUNT(*) FROM \"%1\"").arg(table)) || !count.next()) {
            result.problem = QStringLiteral("the table %1 cannot be read").arg(table);
            return result;
        }
        result.rows.insert(table, count.value(0).toLongLong());
    }
    return result;
}

StoreFile::Census StoreFile::censusOfFile(const QString& path)
{
    const QString name = QStringLiteral("store-check-") + QUuid::createUuid().toString(QUuid::WithoutBraces);
    Census result;
    {
        QSqlDatabase db = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), name);
        db.setDatabaseName(path);
        if (db.open())
            result = census(name);
        else
            result.problem = QStringLiteral("it cannot be opened");
        db.close();
    }
    QSqlDatabase::removeDatabase(name);
    return result;
}

bool StoreFile::copyDurably(const QString& from, const QString& to, QString* error)
{
    const int in = ::open(QFile::encodeName(from).constData(), O_RDONLY | O_CLOEXEC);
    if (in < 0) {
        *error = QStringLiteral("Cannot read %1: %2").arg(from, systemError());
        return false;
    }
    const int out = ::open(QFile::encodeName(to).constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
    if (out < 0) {
        *error = QStringLiteral("Cannot write %1: %2").arg(to, systemError());
        ::close(in);
        return false;
    }
    QByteArray block(1 << 20, Qt::Uninitialized);
    bool ok = true;
    for (;;) {
        const ssize_t got = ::read(in, block.data(), size_t(block.size()));
        if (got < 0 && errno == EINTR)
            continue;
        if (got < 0) {
            *error = QStringLiteral("Cannot read %1: %2").arg(from, systemError());
            ok = false;
            break;
        }
        if (got == 0)
            break;
        for (ssize_t done = 0; ok && done < got;) {
            const ssize_t put = ::write(out, block.constData() + done, size_t(got - done));
            if (put < 0 && errno == EINTR)
                continue;
            if (put < 0) {
                *error = QStringLiteral("Cannot write %1: %2").arg(to, systemError());
                ok = false;
            } else {
                done += put;
            }
        }
        if (!ok)
            break;
    }
    // Space runs out at fsync() too, on file systems that allocate late.
    if (ok && ::fsync(out) != 0) {
        *error = QStringLiteral("Cannot write %1: %2").arg(to, systemError());
        ok = false;
    }
    ::close(in);
    if (::close(out) != 0 && ok) {
        *error = QStringLiteral("Cannot write %1: %2").arg(to, systemError());
        ok = false;
    }
    if (ok && !syncFolder(QFileInfo(to).absolutePath())) {
        *error = QStringLiteral("Cannot make %1 durable: %2").arg(to, systemError());
        ok = false;
    }
    return ok;
}

void StoreFile::removeWithCompanions(const QString& path)
{
    for (const QString& suffix : Companions)
        QFile::remove(path + suffix);
    QFile::remove(path);
}

bool StoreFile::move(
    EngineStore* store, const QString& target, const std::function<bool(const QString&)>& remember, QString* error)
{
    const QString source = store->filePath();
    const QFileInfo targetInfo(target);
    if (target.trimmed().isEmpty() || !targetInfo.isAbsolute() || target.endsWith(QLatin1Char('/'))) {
        *error = QStringLiteral("\"%1\" is no full path of a file").arg(target);
        return false;
    }
    const QString destination = targetInfo.absoluteFilePath();
    if (QFileInfo(source).absoluteFilePath() == destination) {
        *error = QStringLiteral("The database is already at %1").arg(destination);
        return false;
    }
    if (targetInfo.exists()) {
        *error = QStringLiteral("A file is already at %1; the database does not replace it").arg(destination);
        return false;
    }
    if (!QDir().mkpath(targetInfo.absolutePath())) {
        *error = QStringLiteral("Cannot make the folder %1").arg(targetInfo.absolutePath());
        return false;
    }

    const Census before = census(store->database().database().connectionName());
    if (!before.problem.isEmpty()) {
        *error = QStringLiteral("The database is not moved: %1").arg(before.problem);
        return false;
    }
    // Everything in the main file, so that the file alone is the database.
    store->database().exec(QStringLiteral("PRAGMA wal_checkpoint(TRUNCATE)"));
    store->close();

    const auto reopen = [&](const QString& why) {
        removeWithCompanions(destination);
        if (!store->open(source))
            *error = QStringLiteral("%1; and the store cannot be opened again: %2").arg(why, store->lastError());
        else
            *error = why;
        return false;
    };
    QString copyError;
    if (!copyDurably(source, destination, &copyError))
        return reopen(QStringLiteral("The database is not moved: %1").arg(copyError));
    const Census after = censusOfFile(destination);
    if (!after.problem.isEmpty())
        return reopen(QStringLiteral("The database is not moved: the copy at %1 is damaged (%2)")
                          .arg(destination, after.problem));
    if (after.version != before.version || after.rows != before.rows)
        return reopen(
            QStringLiteral("The database is not moved: the copy at %1 differs from the original").arg(destination));
    if (!store->open(destination)) {
        const QString why = store->lastError();
        return reopen(QStringLiteral("The database is not moved: %1").arg(why));
    }
    if (!remember(destination)) {
        store->close();
        return reopen(QStringLiteral("The database is not moved: its new place cannot be recorded in the settings"));
    }
    removeWithCompanions(source);
    syncFolder(QFileInfo(source).absolutePath());
    return true;
}

} // namespace NVB::Engine
