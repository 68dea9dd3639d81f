#pragma once

#include <QHash>
#include <QMap>

#include "planreader.h"

namespace NVB::Engine {

// Reads a legacy-format plan back from a File System account:
// `NVB_<prefix>/<plan>/<generation>/<nnnnnn>/` followed by each copied
// file's source path. The layout keeps one folder per run with the files
// that run copied; a file left unchanged lives on in an earlier run's
// folder. So a point is read as every file its generation's folders hold up
// to it, the latest copy of each path winning. What the layout does not
// keep, and a point read back therefore lacks: files deleted from the source
// (they stay in the later points of their generation), each file's SHA-256
// (a restore then cannot check the data; increments carry theirs),
// permissions and owners (a restore takes the copy's own mode), links and
// empty folders, the plan's name, whether a run ended (a killed run's
// folder reads as a point of the whole copies it made), and the paths of an
// enciphered plan's files (their objects are named by a keyed hash).
class LegacyReader : public PlanReader
{
public:
    // `accountFolder` ends with a slash.
    LegacyReader(const QString& accountFolder, const QString& prefix, const QUuid& planId);

    bool isArchive() const override { return false; }
    QString planName() const override { return {}; }
    QList<QUuid> generations(QString* error) override;
    QList<int> points(const QUuid& generation, QString* error) override;
    bool read(const QUuid& generation, int sequence, FoundPoint* point, QString* error) override;

    // Whether the plan's folder holds any legacy generation.
    static bool holdsGeneration(const QString& planFolder);

private:
    struct PointFiles
    {
        QList<StoredContent> entries;
        qint64 size = 0;
        bool enciphered = false;
    };
    QString relativePlanFolder() const;
    QString pointFolder(const QUuid& generation, int sequence) const;
    bool readPointFolder(const QUuid& generation, int sequence, PointFiles* files, QString* error);

    QString m_accountFolder;
    QString m_prefix;
    QUuid m_planId;
    // The running union of the generation's points read so far.
    QUuid m_generation;
    int m_lastSequence = 0;
    QMap<QString, StoredContent> m_current;
};

} // namespace NVB::Engine
