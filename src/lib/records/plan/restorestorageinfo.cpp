#include "restorestorageinfo.h"

#include "records/recordxml.h"

namespace NVB::Info::Plan {

void RestoreStorageInfo::writeFields(QDomElement& e) const
{
    StorageInfo::writeFields(e);
    RecordXml::addInt(e, QStringLiteral("Type"), m_type);
}

void RestoreStorageInfo::readFields(const QDomElement& e)
{
    StorageInfo::readFields(e);
    m_type = Type(RecordXml::toEnum(e, QStringLiteral("Type"), {Standard, Bulk, Expedited}));
}

} // namespace NVB::Info::Plan
