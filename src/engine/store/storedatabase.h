#pragma once

#include <functional>

#include <QSqlDatabase>
#include <QString>
#include <QUuid>

namespace NVB::Engine {

// One connection to the engine's SQLite file, used from the thread that
// opened it only. Opening brings the schema up to date (StoreMigrations).
// Every change goes through transaction(): all of it or nothing.
class StoreDatabase
{
public:
    StoreDatabase();
    ~StoreDatabase();
    StoreDatabase(const StoreDatabase&) = delete;
    StoreDatabase& operator=(const StoreDatabase&) = delete;

    bool open(const QString& filePath);
    void close();
    bool isOpen() const;
    QString filePath() const { return m_filePath; }
    QString lastError() const { return m_lastError; }
    QSqlDatabase database() const;

    // Runs `work` in one transaction. A durable transaction commits with
    // synchronous=FULL: when it answers true its data survives a power loss,
    // which is what a restore point's commit needs; everything else may lose
    // its last commit to a power cut and still stays consistent.
    bool transaction(const std::function<bool()>& work, bool durable = false);
    bool exec(const QString& statement);
    // Keeps the reason and answers false, for `return ok || fail(...)`.
    bool fail(const QString& message);
    int userVersion();
    // Deletes the row of `table` with the id in a transaction of its own;
    // `missing` (with %1 for the id) is the error when there is none.
    bool deleteById(const QString& table, const QUuid& id, const QString& what, const QString& missing);

private:
    QString m_connectionName;
    QString m_filePath;
    QString m_lastError;
};

} // namespace NVB::Engine
