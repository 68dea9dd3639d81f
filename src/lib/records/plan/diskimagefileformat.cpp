#include "diskimagefileformat.h"

#include "records/recordxml.h"

namespace NVB::Info::Plan {

QString DiskImageFileFormat::Type2String(Type type)
{
    switch (type) {
    case Vhd:
        return QStringLiteral("VHD");
    case Vhdx:
        return QStringLiteral("VHDX");
    case Vmdk:
        return QStringLiteral("VMDK");
    case Vdi:
        return QStringLiteral("VDI");
    case Raw:
        return QStringLiteral("RAW");
    case Qcow2:
        return QStringLiteral("QCOW2");
    }
    return QString();
}

void DiskImageFileFormat::writeXml(QDomElement& parent) const
{
    QDomElement e = RecordXml::addElement(parent, QStringLiteral("DiskImageFileFormat"));
    RecordXml::addInt(e, QStringLiteral("Type"), m_type);
    RecordXml::addText(e, QStringLiteral("DisplayName"), m_displayName);
}

void DiskImageFileFormat::readXml(const QDomElement& e)
{
    m_type = Type(RecordXml::toEnum(e, QStringLiteral("Type"), {Vhd, Vhdx, Vmdk, Vdi, Raw, Qcow2}));
    m_displayName = RecordXml::text(e, QStringLiteral("DisplayName"));
}

} // namespace NVB::Info::Plan
