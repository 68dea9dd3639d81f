#pragma once

#include <QDomElement>
#include <QString>

namespace NVB::Info::Plan {

// The virtual disk format an image is restored into; reached as
// RestoreDiskImage::DiskImageFileFormat.
class DiskImageFileFormat
{
public:
    enum Type { Vhd = 0, Vhdx = 1, Vmdk = 2, Vdi = 3, Raw = 4, Qcow2 = 5 };

    static QString Type2String(Type type);

    Type type() const { return m_type; }
    void setType(Type type) { m_type = type; }
    QString displayName() const { return m_displayName; }
    void setDisplayName(const QString& name) { m_displayName = name; }

    void writeXml(QDomElement& parent) const;
    // Throws a QString naming the faulty element.
    void readXml(const QDomElement& element);

private:
    Type m_type = Vhdx;
    QString m_displayName = Type2String(Vhdx);
};

} // namespace NVB::Info::Plan
