#include "notification.h"

#include "records/recordxml.h"

namespace NVB::Info::Plan {

void Notification::writeXml(QDomElement& parent) const
{
    QDomElement e = RecordXml::addElement(parent, QStringLiteral("Notification"));
    RecordXml::addInt(e, QStringLiteral("Type"), m_type);
    RecordXml::addText(e, QStringLiteral("Subject"), m_subject);
    RecordXml::addBool(e, QStringLiteral("GenerateDetailedReport"), m_generateDetailedReport);
}

void Notification::readXml(const QDomElement& e)
{
    m_type = Type(RecordXml::toEnum(e, QStringLiteral("Type"), {Never, Always, OnFailure}));
    m_subject = RecordXml::text(e, QStringLiteral("Subject"));
    m_generateDetailedReport = RecordXml::toBool(e, QStringLiteral("GenerateDetailedReport"));
}

} // namespace NVB::Info::Plan
