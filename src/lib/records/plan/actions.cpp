#include "actions.h"

#include "records/recordxml.h"

namespace NVB::Info::Plan {

void Actions::writeXml(QDomElement& parent) const
{
    QDomElement e = RecordXml::addElement(parent, QStringLiteral("Actions"));
    m_pre.writeXml(e);
    m_post.writeXml(e);
}

void Actions::readXml(const QDomElement& e)
{
    m_pre.readXml(RecordXml::element(e, QStringLiteral("PreAction")));
    m_post.readXml(RecordXml::element(e, QStringLiteral("PostAction")));
}

} // namespace NVB::Info::Plan
