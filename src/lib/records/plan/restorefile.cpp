#include "restorefile.h"

#include "records/recordxml.h"

namespace NVB::Info::Plan {

RestoreFile::RestoreFile()
    : Restore(SubType::File)
{ }

QString RestoreFile::rootElement() const
{
    return QStringLiteral("RestoreFilePlan");
}

void RestoreFile::writeFields(QDomElement& root) const
{
    Restore::writeFields(root);
    RecordXml::addText(root, QStringLiteral("Destination"), m_destination);
    RecordXml::addList(root, QStringLiteral("RestoreItems"), m_restoreItems);
    RecordXml::addBool(root, QStringLiteral("OnlyNewFiles"), m_onlyNewFiles);
    RecordXml::addBool(root, QStringLiteral("SkipExistingFiles"), m_skipExistingFiles);
    RecordXml::addBool(root, QStringLiteral("RestoreDeletedFiles"), m_restoreDeletedFiles);
    RecordXml::addBool(root, QStringLiteral("RestoreToOriginalLocation"), m_restoreToOriginalLocation);
}

void RestoreFile::readFields(const QDomElement& root)
{
    Restore::readFields(root);
    m_destination = RecordXml::text(root, QStringLiteral("Destination"));
    m_restoreItems = RecordXml::toList(root, QStringLiteral("RestoreItems"));
    m_onlyNewFiles = RecordXml::toBool(root, QStringLiteral("OnlyNewFiles"));
    m_skipExistingFiles = RecordXml::toBool(root, QStringLiteral("SkipExistingFiles"));
    m_restoreDeletedFiles = RecordXml::toBool(root, QStringLiteral("RestoreDeletedFiles"));
    m_restoreToOriginalLocation = RecordXml::toBool(root, QStringLiteral("RestoreToOriginalLocation"));
}

} // namespace NVB::Info::Plan
