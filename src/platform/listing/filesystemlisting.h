#pragma once

#include <QJsonArray>
#include <QList>
#include <QString>
#include <QStringList>

namespace NVB {

// Lists the local machine for the file trees of the console.
//
// An empty path stands for the machine itself: its volumes (every mounted disk
// file system, each with the mount point as its real path) and the network
// shares mounted from CIFS and NFS servers. Any other path is a folder, listed
// to the given depth. Every element carries the keys of
// NVB::Constants::SessionAccess::FileSystemObject::Items.
//
// One object lists one path at a time; it is not meant to be shared between
// threads without a lock.
class FileSystemListing
{
public:
    // A mounted file system as the root listing shows it.
    struct Volume
    {
        QString name;
        QString path; // as shown: "/" for the root file system, else below "/NVB_VOLUMES" or "/NVB_SHARES"
        QString realPath; // the mount point
        QString fileSystem;
        QString source;
        bool isShare = false;
    };

    FileSystemListing();

    // depth 0 lists the entries of the path itself, each further level one
    // generation more. limit caps the number of elements (0: no cap); hidden
    // entries are left out unless withHidden. Symbolic links are reported, never
    // descended into. Answers !hasError().
    bool list(const QString& path, int depth = 0, int limit = 0, bool withHidden = true);

    bool hasError() const { return m_hasError; }
    QString errorString() const { return m_errorString; }
    QJsonArray items() const { return m_items; }
    // Hands the items over and leaves the listing empty, so that a big folder
    // isn't held twice once its reader has made what it needs of it.
    QJsonArray takeItems();
    // Folders below the listed path that could not be read; they are left out
    // and do not fail the listing.
    QStringList skippedPaths() const { return m_skipped; }

    // The volumes and shares of a mount table in the form of /proc/self/mountinfo.
    static QList<Volume> volumesFromMountInfo(const QByteArray& mountInfo);
    // The mount table read for the root listing; /proc/self/mountinfo unless set.
    static void setMountTable(const QString& file);
    static QString mountTable();

private:
    void listVolumes(int depth, int limit, bool withHidden);
    void listFolder(
        const QString& shownPath, const QString& realPath, int depth, int limit, bool withHidden, bool isTop);
    bool full(int limit) const;
    void fail(const QString& text);

    QJsonArray m_items;
    QStringList m_skipped;
    QString m_errorString;
    bool m_hasError = false;
};

} // namespace NVB
