#include "postaction.h"

#include "records/recordxml.h"

namespace NVB::Info::Plan {

void PostAction::writeXml(QDomElement& parent) const
{
    QDomElement e = RecordXml::addElement(parent, QStringLiteral("PostAction"));
    writeActionFields(e);
    RecordXml::addBool(e, QStringLiteral("RunOnBackupFailure"), m_runOnBackupFailure);
}

void PostAction::readXml(const QDomElement& e)
{
    readActionFields(e);
    m_runOnBackupFailure = RecordXml::toBool(e, QStringLiteral("RunOnBackupFailure"));
}

} // namespace NVB::Info::Plan
