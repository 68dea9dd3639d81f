#pragma once

#include <mutex>

#include <QFuture>
#include <QHash>
#include <QJsonArray>
#include <QJsonObject>
#include <QList>
#include <QQueue>
#include <QScopedPointer>
#include <QSet>
#include <QStringList>

#include "models/basefilesmodel.h"

namespace NVB {
class FileSystemListing;
}

namespace NVB::GUI {

// The local machine as a check tree: volumes and network shares at the top,
// folders listed on a worker thread as they are opened. Turns the marks into
// the include and exclude lists of a plan and back.
class FileSystemCheckedModel : public BaseFilesModel
{
    Q_OBJECT

public:
    explicit FileSystemCheckedModel(QObject* parent = nullptr);
    ~FileSystemCheckedModel() override;

    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;

    bool load(const QStringList& paths, int depth) override;

    virtual void initChecked(const QStringList& include, const QStringList& exclude);
    QStringList includePath(bool replace) const;
    QStringList excludePath(bool replace) const;

    // A real path as a plan keeps it: below the shown path of its volume.
    QString replacePath(QString path) const;
    // Shown paths of a plan back to real paths.
    QStringList unReplacePath(const QStringList& paths) const;

    QList<QObject*> toObjectList(const QJsonArray& array) const;
    QObject* objectFromJson(const QJsonObject& object) const;

    // Waits until no listing runs on a worker; the results still come by the
    // event loop.
    void waitForListings();

public slots:
    void onResult(const QString& rootPath, const QList<QObject*>& objects) override;

signals:
    void listed(const QString& rootPath, const QList<QObject*>& objects);

protected:
    // Runs on a worker thread: touches the lister and makes nodes, never the tree.
    void list(const QStringList& paths, int depth);
    void addVolumes(const QJsonArray& array);

private slots:
    void onListingFailed(const QString& path);

private:
    struct Job
    {
        QStringList paths;
        int depth = 0;
    };
    void runListing();
    QStringList pathsOfState(int first, int second, bool underMarked, bool replace) const;
    void markArrived(QObject* node);

    QSet<QString> m_include;
    QSet<QString> m_exclude;
    QHash<QString, QString> m_realByShown;
    QHash<QString, QString> m_shownByReal;
    QScopedPointer<FileSystemListing> m_lister;
    // One listing at a time: the lister isn't shared between threads. A
    // standard mutex, so that the thread sanitizer sees it.
    std::mutex m_listerLock;
    // Listings asked for and not yet started, taken by the workers in order.
    QQueue<Job> m_jobs;
    std::mutex m_jobsLock;
    // Marks hand-overs between threads for the thread sanitizer.
    char m_handOver = 0;
    QList<QFuture<void>> m_listings;
    bool m_closing = false;
};

} // namespace NVB::GUI
