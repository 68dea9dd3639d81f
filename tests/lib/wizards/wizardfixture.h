#pragma once

#include <QDir>
#include <QFile>
#include <QScopedPointer>
#include <QTemporaryDir>
#include <QTest>

#include "listing/filesystemlisting.h"
#include "models/filesystemcheckedmodel.h"

// A machine of one volume, a real temporary folder tree, for the file trees
// of the wizard:
//   vol/docs/a.txt, vol/docs/b.txt, vol/docs/.hidden, vol/music/song.ogg
class WizardVolume
{
public:
    WizardVolume()
        : m_dir(new QTemporaryDir())
    {
        QDir dir(m_dir->path());
        for (const char* folder : {"vol/docs", "vol/music"})
            dir.mkpath(QLatin1String(folder));
        for (const char* file : {"vol/docs/a.txt", "vol/docs/b.txt", "vol/docs/.hidden", "vol/music/song.ogg"}) {
            QFile touch(m_dir->path() + QLatin1Char('/') + QLatin1String(file));
            touch.open(QIODevice::WriteOnly);
        }
        QFile table(m_dir->path() + QStringLiteral("/mountinfo"));
        table.open(QIODevice::WriteOnly);
        table.write("28 1 254:1 / " + QFile::encodeName(vol()) + " rw - ext4 /dev/vdb rw\n");
        table.close();
        NVB::FileSystemListing::setMountTable(table.fileName());
    }

    ~WizardVolume() { NVB::FileSystemListing::setMountTable(QString()); }

    QString vol(const QString& relative = QString()) const
    {
        const QString root = m_dir->path() + QStringLiteral("/vol");
        return relative.isEmpty() ? root : root + QLatin1Char('/') + relative;
    }

    // A mount table without a single volume.
    void makeEmpty()
    {
        QFile table(m_dir->path() + QStringLiteral("/mountinfo"));
        table.open(QIODevice::WriteOnly | QIODevice::Truncate);
    }

    static bool expand(NVB::GUI::FileSystemCheckedModel* model, const QString& path)
    {
        const QModelIndex index = model->indexByPath(path);
        if (!index.isValid())
            return false;
        if (model->canFetchMore(index))
            model->fetchMore(index);
        return QTest::qWaitFor([&] { return model->rowCount(model->indexByPath(path)) > 0; });
    }

    static bool mark(NVB::GUI::FileSystemCheckedModel* model, const QString& path, int state)
    {
        return model->setData(model->indexByPath(path), state, Qt::CheckStateRole);
    }

private:
    QScopedPointer<QTemporaryDir> m_dir;
};
