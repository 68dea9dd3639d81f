#include "action.h"

#include "records/recordxml.h"

namespace NVB::Info::Plan {

void Action::writeActionFields(QDomElement& e) const
{
    RecordXml::addBool(e, QStringLiteral("Enabled"), m_enabled);
    RecordXml::addText(e, QStringLiteral("Program"), m_program);
    RecordXml::addText(e, QStringLiteral("Arguments"), m_arguments);
}

void Action::readActionFields(const QDomElement& e)
{
    m_enabled = RecordXml::toBool(e, QStringLiteral("Enabled"));
    m_program = RecordXml::text(e, QStringLiteral("Program"));
    m_arguments = RecordXml::text(e, QStringLiteral("Arguments"));
}

} // namespace NVB::Info::Plan
