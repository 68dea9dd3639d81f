#include "backupfile.h"

#include "records/recordxml.h"

namespace NVB::Info::Plan {

BackupFile::BackupFile()
    : Backup(SubType::File)
{ }

QString BackupFile::rootElement() const
{
    return QStringLiteral("BackupFilePlan");
}

void BackupFile::writeFields(QDomElement& root) const
{
    Backup::writeFields(root);
    RecordXml::addList(root, QStringLiteral("Items"), m_items);
    RecordXml::addList(root, QStringLiteral("ExcludeItems"), m_excludeItems);
    RecordXml::addInt(root, QStringLiteral("FilterType"), m_filterType);
    RecordXml::addList(root, QStringLiteral("Filter"), m_filter);
    RecordXml::addList(root, QStringLiteral("ExcludeFolderList"), m_excludeFolderList);
    RecordXml::addBool(root, QStringLiteral("BackupEmptyFolders"), m_backupEmptyFolders);
    RecordXml::addBool(root, QStringLiteral("ExcludeSystemAndHidden"), m_excludeSystemAndHidden);
    RecordXml::addBool(root, QStringLiteral("SkipInUseFiles"), m_skipInUseFiles);
    RecordXml::addDateTime(root, QStringLiteral("ReBackupModifiedSince"), m_reBackupModifiedSince);
}

void BackupFile::readFields(const QDomElement& root)
{
    Backup::readFields(root);
    m_items = RecordXml::toList(root, QStringLiteral("Items"));
    m_excludeItems = RecordXml::toList(root, QStringLiteral("ExcludeItems"));
    m_filterType
        = FilterType(RecordXml::toEnum(root, QStringLiteral("FilterType"), {AllFiles, OnlyListed, AllButListed}));
    m_filter = RecordXml::toList(root, QStringLiteral("Filter"));
    m_excludeFolderList = RecordXml::toList(root, QStringLiteral("ExcludeFolderList"));
    m_backupEmptyFolders = RecordXml::toBool(root, QStringLiteral("BackupEmptyFolders"));
    m_excludeSystemAndHidden = RecordXml::toBool(root, QStringLiteral("ExcludeSystemAndHidden"));
    m_skipInUseFiles = RecordXml::toBool(root, QStringLiteral("SkipInUseFiles"));
    m_reBackupModifiedSince = RecordXml::toDateTime(root, QStringLiteral("ReBackupModifiedSince"));
}

} // namespace NVB::Info::Plan
