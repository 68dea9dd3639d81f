#pragma once

#include <QDateTime>
#include <QStringList>

#include "records/plan/backup.h"

namespace NVB::Info::Plan {

// A file-level backup plan.
class BackupFile : public Backup
{
public:
    enum FilterType { AllFiles = 0, OnlyListed = 1, AllButListed = 2 };

    BackupFile();

    QStringList items() const { return m_items; }
    void setItems(const QStringList& items) { m_items = items; }
    QStringList excludeItems() const { return m_excludeItems; }
    void setExcludeItems(const QStringList& items) { m_excludeItems = items; }
    FilterType filterType() const { return m_filterType; }
    void setFilterType(FilterType type) { m_filterType = type; }
    QStringList filter() const { return m_filter; }
    void setFilter(const QStringList& filter) { m_filter = filter; }
    QStringList excludeFolderList() const { return m_excludeFolderList; }
    void setExcludeFolderList(const QStringList& folders) { m_excludeFolderList = folders; }
    bool backupEmptyFolders() const { return m_backupEmptyFolders; }
    void setBackupEmptyFolders(bool backup) { m_backupEmptyFolders = backup; }
    bool excludeSystemAndHidden() const { return m_excludeSystemAndHidden; }
    void setExcludeSystemAndHidden(bool exclude) { m_excludeSystemAndHidden = exclude; }
    bool skipInUseFiles() const { return m_skipInUseFiles; }
    void setSkipInUseFiles(bool skip) { m_skipInUseFiles = skip; }
    // Invalid: no demand to back up again.
    QDateTime reBackupModifiedSince() const { return m_reBackupModifiedSince; }
    void setReBackupModifiedSince(const QDateTime& since) { m_reBackupModifiedSince = since; }

    QString rootElement() const override;
    void readFields(const QDomElement& root) override;

protected:
    void writeFields(QDomElement& root) const override;

private:
    QStringList m_items;
    QStringList m_excludeItems;
    FilterType m_filterType = AllFiles;
    QStringList m_filter;
    QStringList m_excludeFolderList;
    bool m_backupEmptyFolders = true;
    bool m_excludeSystemAndHidden = false;
    bool m_skipInUseFiles = false;
    QDateTime m_reBackupModifiedSince;
};

} // namespace NVB::Info::Plan
