#include "preaction.h"

#include "records/recordxml.h"

namespace NVB::Info::Plan {

void PreAction::writeXml(QDomElement& parent) const
{
    QDomElement e = RecordXml::addElement(parent, QStringLiteral("PreAction"));
    writeActionFields(e);
    RecordXml::addBool(e, QStringLiteral("TerminateOnFailure"), m_terminateOnFailure);
}

void PreAction::readXml(const QDomElement& e)
{
    readActionFields(e);
    m_terminateOnFailure = RecordXml::toBool(e, QStringLiteral("TerminateOnFailure"));
}

} // namespace NVB::Info::Plan
