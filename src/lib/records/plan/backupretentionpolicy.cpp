#include "backupretentionpolicy.h"

#include <limits>

#include "records/recordxml.h"

namespace NVB::Info::Plan {

void BackupRetentionPolicy::writeXml(QDomElement& parent) const
{
    QDomElement e = RecordXml::addElement(parent, QStringLiteral("RetentionPolicy"));
    RecordXml::addInt(e, QStringLiteral("Type"), m_type);
    RecordXml::addBool(e, QStringLiteral("UseDeleteOlder"), m_useDeleteOlder);
    QDomElement age = RecordXml::addElement(e, QStringLiteral("DeleteFileAge"));
    RecordXml::addInt(age, QStringLiteral("Amount"), m_deleteFileAge.first);
    RecordXml::addInt(age, QStringLiteral("Unit"), m_deleteFileAge.second);
    RecordXml::addBool(e, QStringLiteral("UseBackupDate"), m_useBackupDate);
    RecordXml::addBool(e, QStringLiteral("UseKeepLastVersion"), m_useKeepLastVersion);
    RecordXml::addBool(e, QStringLiteral("UseKeepVersion"), m_useKeepVersion);
    RecordXml::addInt(e, QStringLiteral("KeepVersion"), m_keepVersion);
    RecordXml::addBool(e, QStringLiteral("UseDeleteLocaly"), m_useDeleteLocaly);
    RecordXml::addInt(e, QStringLiteral("DeleteLocalyAfter"), m_deleteLocalyAfter);
}

void BackupRetentionPolicy::readXml(const QDomElement& e)
{
    constexpr qint64 maxInt = std::numeric_limits<qint32>::max();
    m_type = Type(RecordXml::toEnum(e, QStringLiteral("Type"), {Default, Custom}));
    m_useDeleteOlder = RecordXml::toBool(e, QStringLiteral("UseDeleteOlder"));
    const QDomElement age = RecordXml::element(e, QStringLiteral("DeleteFileAge"));
    m_deleteFileAge.first = qint32(RecordXml::toInt(age, QStringLiteral("Amount"), 0, maxInt));
    m_deleteFileAge.second = RecordXml::toEnum(age, QStringLiteral("Unit"), {Day, Week, Month, Year});
    m_useBackupDate = RecordXml::toBool(e, QStringLiteral("UseBackupDate"));
    m_useKeepLastVersion = RecordXml::toBool(e, QStringLiteral("UseKeepLastVersion"));
    m_useKeepVersion = RecordXml::toBool(e, QStringLiteral("UseKeepVersion"));
    m_keepVersion = int(RecordXml::toInt(e, QStringLiteral("KeepVersion"), 0, maxInt));
    m_useDeleteLocaly = RecordXml::toBool(e, QStringLiteral("UseDeleteLocaly"));
    m_deleteLocalyAfter = int(RecordXml::toInt(e, QStringLiteral("DeleteLocalyAfter"), 0, maxInt));
}

} // namespace NVB::Info::Plan
