#pragma once

#include <QDir>
#include <QFile>
#include <QScopedPointer>
#include <QTemporaryDir>
#include <QTest>

#include "listing/filesystemlisting.h"

namespace NvbTest {

// A real folder tree in a temporary folder: entries ending in '/' are
// folders, the others empty files, all relative to the root. Once something
// is mounted, the lister reads the tree's own mount table instead of the
// machine's until the tree goes.
class FileTree
{
public:
    explicit FileTree(std::initializer_list<const char*> entries = {})
        : m_dir(new QTemporaryDir())
    {
        for (const char* entry : entries)
            add(QString::fromUtf8(entry));
    }

    ~FileTree()
    {
        if (m_mounts > 0)
            NVB::FileSystemListing::setMountTable(QString());
    }

    QString path(const QString& relative = QString()) const
    {
        return relative.isEmpty() ? m_dir->path() : m_dir->path() + QLatin1Char('/') + relative;
    }

    bool add(const QString& relative)
    {
        if (relative.endsWith(QLatin1Char('/')))
            return QDir().mkpath(path(relative));
        QDir().mkpath(QFileInfo(path(relative)).absolutePath());
        QFile file(path(relative));
        return file.open(QIODevice::WriteOnly);
    }

    // The folder as a mount point of that file system and source.
    void mount(const QString& relative, const char* fileSystem = "ext4", const char* source = "/dev/vdb")
    {
        QFile table(mountTable());
        table.open(QIODevice::Append);
        table.write(QByteArray::number(27 + m_mounts) + (m_mounts ? " 27 " : " 1 ")
            + "254:" + QByteArray::number(m_mounts) + " / " + QFile::encodeName(path(relative)) + " rw - " + fileSystem
            + ' ' + source + " rw\n");
        table.close();
        ++m_mounts;
        NVB::FileSystemListing::setMountTable(table.fileName());
    }

    // A mount table without a single volume.
    void unmountAll() const
    {
        QFile table(mountTable());
        table.open(QIODevice::WriteOnly | QIODevice::Truncate);
    }

private:
    QString mountTable() const { return path(QStringLiteral("mountinfo")); }

    QScopedPointer<QTemporaryDir> m_dir;
    int m_mounts = 0;
};

// The check mark of the node at `path` in a file model.
template<class Model> int checkState(const Model& model, const QString& path)
{
    return model.indexByPath(path).data(Qt::CheckStateRole).toInt();
}

// Opens the folder at `path` in a file model and waits for its rows.
template<class Model> bool expand(Model& model, const QString& path)
{
    const QModelIndex index = model.indexByPath(path);
    if (!index.isValid())
        return false;
    if (model.canFetchMore(index))
        model.fetchMore(index);
    return QTest::qWaitFor([&] { return model.rowCount(model.indexByPath(path)) > 0; });
}

} // namespace NvbTest
