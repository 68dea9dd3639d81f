#pragma once

#include <functional>

#include <QMap>
#include <QString>

namespace NVB::Engine {

class EngineStore;

// Where the engine's store file lies, and moving it. The file is
// "nvbackup.db" in the data folder unless the default setting
// "DatabasePath" names another.
class StoreFile
{
public:
    static QString fileName() { return QStringLiteral("nvbackup.db"); }
    static QString location(const QString& dataFolder, const QString& configuredPath);
    // Renames the store of earlier engines ("engine.db", with its WAL and
    // shared-memory files) to the present name, when only the old one
    // exists. The main file goes last, so an interrupted rename is finished
    // at the next start.
    static bool adoptOldName(const QString& dataFolder, QString* error);

    // Moves the open store to `target` (a full file path) and keeps it open
    // there: the copy is made durable and checked (integrity, schema version,
    // the rows of every table) before `remember` records the new place, and
    // the old file goes last. On any failure the store is open on its old
    // file again, unchanged, and `error` says why.
    static bool move(
        EngineStore* store, const QString& target, const std::function<bool(const QString&)>& remember, QString* error);

private:
    struct Census
    {
        int version = -1;
        QMap<QString, qint64> rows;
        QString problem;
    };

    static Census census(const QString& connectionName);
    static Census censusOfFile(const QString& path);
    static bool copyDurably(const QString& from, const QString& to, QString* error);
    static void removeWithCompanions(const QString& path);
};

} // namespace NVB::Engine
