#pragma once

#include <QDir>
#include <QFile>
#include <QStandardItemModel>
#include <QUuid>
#include <QWizard>

#include "accounts/storageseditlist.h"
#include "core/apppath.h"
#include "filetree.h"
#include "models/filesystemcheckedmodel.h"
#include "models/modelcreator.h"
#include "models/modelmanager.h"
#include "models/models.h"
#include "wizards/common/pagecloud.h"

// The installation's licence for one test: "free" or "full", written into the
// configuration file the licence stand-in reads; removed again at the end.
class WizardLicence
{
public:
    explicit WizardLicence(const char* licence)
    {
        QDir().mkpath(NVB::Defines::AppPath::to().config());
        QFile file(path());
        file.open(QIODevice::WriteOnly | QIODevice::Truncate);
        file.write(QByteArray("<nvbBackup license=\"") + licence + "\"/>");
    }
    ~WizardLicence() { QFile::remove(path()); }

private:
    static QString path() { return NVB::Defines::AppPath::to().config() + QStringLiteral("/nvbBackup.conf"); }
};

// A machine of one volume, a real temporary folder tree, for the file trees
// of the wizard:
//   vol/docs/a.txt, vol/docs/b.txt, vol/docs/.hidden, vol/music/song.ogg
class WizardVolume
{
public:
    WizardVolume()
        : m_tree({"vol/docs/a.txt", "vol/docs/b.txt", "vol/docs/.hidden", "vol/music/song.ogg"})
    {
        m_tree.mount(QStringLiteral("vol"));
    }

    QString vol(const QString& relative = QString()) const
    {
        return m_tree.path(relative.isEmpty() ? QStringLiteral("vol") : QStringLiteral("vol/") + relative);
    }

    // A mount table without a single volume.
    void makeEmpty() { m_tree.unmountAll(); }

    static bool expand(NVB::GUI::FileSystemCheckedModel* model, const QString& path)
    {
        return NvbTest::expand(*model, path);
    }

    static bool mark(NVB::GUI::FileSystemCheckedModel* model, const QString& path, int state)
    {
        return model->setData(model->indexByPath(path), state, Qt::CheckStateRole);
    }

private:
    NvbTest::FileTree m_tree;
};

// The shared storage table with one File System account, so that the storage
// page offers something to choose; pass() chooses it and moves on.
class WizardStorage
{
public:
    static QUuid accountId() { return QUuid(QStringLiteral("{6a1c0f5e-8d0e-4a5b-9e53-1f2d3c4b5a69}")); }

    static void ensureRegistered()
    {
        static Creator creator;
        if (const auto manager = NVB::GUI::ModelManager::instance())
            manager->registrateCreator(creator);
    }

    // From the storage page, if the wizard stands on it, to the next page.
    static void pass(QWizard& wizard)
    {
        auto* page = qobject_cast<NVB::GUI::PlanWizardBase::PageCloud*>(wizard.currentPage());
        if (!page || wizard.currentId() != 0)
            return;
        QAbstractItemModel* model = page->list()->model();
        QVERIFY(model && model->rowCount() > 0);
        page->list()->setCurrentIndex(model->index(0, 0));
        QVERIFY(page->isComplete());
        wizard.next();
    }

private:
    class Creator : public NVB::GUI::ModelCreator
    {
    public:
        QAbstractItemModel* create() override
        {
            if (!m_model) {
                m_model = new QStandardItemModel(0, 10);
                QList<QStandardItem*> row;
                for (const QString& text : {QStringLiteral("Local disk"), WizardStorage::accountId().toString(),
                         QStringLiteral("/backup/"), QStringLiteral("host"), QString(), QStringLiteral("1"), QString(),
                         QString(), QString(), QString()})
                    row << new QStandardItem(text);
                m_model->appendRow(row);
            }
            return m_model;
        }
        QString type() const override { return NVB::GUI::Models::Table::NvbStorageConnectionModelInfo::Type; }

    private:
        QStandardItemModel* m_model = nullptr;
    };
};

// On past the filter, compression and retention pages, with what they show by
// default, to the first page that isn't one of them.
inline void passOptionPages(QWizard& wizard)
{
    for (int steps = 0;
         steps < 8 && (wizard.currentId() == 102 || wizard.currentId() == 5 || wizard.currentId() == 103); ++steps)
        wizard.next();
}

// Back to the page, over the option pages between.
inline void backTo(QWizard& wizard, int id)
{
    for (int steps = 0; steps < 8 && wizard.currentId() != id; ++steps)
        wizard.back();
}
