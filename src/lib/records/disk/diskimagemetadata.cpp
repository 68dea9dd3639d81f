#include "diskimagemetadata.h"

#include "core/nvldebug.h"
#include "records/recordxml.h"

namespace NVB::Info {

namespace {
const QString RootElement = QStringLiteral("DiskImageMetaData");
const QString DiskInfoElement = QStringLiteral("DiskInfo");
} // namespace

QSharedPointer<DiskImageMetaData> DiskImageMetaData::createFromXml(const QString& xml)
{
    try {
        QDomDocument document;
        const QDomElement root = RecordXml::parseRoot(document, xml);
        if (root.tagName() != RootElement)
            throw QStringLiteral("Unknown disk image document element <%1>").arg(root.tagName());
        RecordXml::version(root);
        auto data = QSharedPointer<DiskImageMetaData>::create();
        data->m_computerName = RecordXml::text(root, QStringLiteral("ComputerName"));
        data->m_backupDate = RecordXml::toDateTime(root, QStringLiteral("BackupDate"));
        if (RecordXml::hasElement(root, DiskInfoElement))
            data->m_diskInfo = DiskInfo::readElement(root.firstChildElement(DiskInfoElement));
        return data;
    } catch (const QString& error) {
        NVL::NvlDebug(QStringLiteral("NVB")).warning() << error;
        return {};
    }
}

QString DiskImageMetaData::toXml() const
{
    QDomDocument document;
    QDomElement root = document.createElement(RootElement);
    RecordXml::setVersion(root);
    RecordXml::addText(root, QStringLiteral("ComputerName"), m_computerName);
    RecordXml::addDateTime(root, QStringLiteral("BackupDate"), m_backupDate);
    if (m_diskInfo)
        root.appendChild(m_diskInfo->toElement(document));
    document.appendChild(root);
    return document.toString(1);
}

} // namespace NVB::Info
