#include "storageinfo.h"

#include "records/recordxml.h"

namespace NVB::Info::Plan {

void StorageInfo::writeXml(QDomElement& parent) const
{
    QDomElement e = RecordXml::addElement(parent, QStringLiteral("StorageInfo"));
    writeFields(e);
}

void StorageInfo::readXml(const QDomElement& element)
{
    readFields(element);
}

void StorageInfo::writeFields(QDomElement& e) const
{
    RecordXml::addBool(e, QStringLiteral("UseS3Accelerated"), m_useS3Accelerated);
}

void StorageInfo::readFields(const QDomElement& e)
{
    m_useS3Accelerated = RecordXml::toBool(e, QStringLiteral("UseS3Accelerated"));
}

} // namespace NVB::Info::Plan
