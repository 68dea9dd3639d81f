#include "base.h"

#include "records/recordxml.h"

namespace NVB::Info::Plan {

Base::Base(Type job, SubType content)
    : m_job(job)
    , m_content(content)
    , m_id(QUuid::createUuid())
{ }

Base::~Base() = default;

QString Base::toXml() const
{
    QDomDocument document;
    QDomElement root = document.createElement(rootElement());
    RecordXml::setVersion(root);
    document.appendChild(root);
    writeFields(root);
    return document.toString(1);
}

void Base::writeFields(QDomElement& root) const
{
    RecordXml::addUuid(root, QStringLiteral("Id"), m_id);
    RecordXml::addText(root, QStringLiteral("Name"), m_name);
    RecordXml::addUuid(root, QStringLiteral("Storage"), m_storage);
    RecordXml::addBool(root, QStringLiteral("IsArchive"), m_isArchive);
    m_schedule.writeXml(root, QStringLiteral("Schedule"));
    m_notification.writeXml(root);
    RecordXml::addBool(root, QStringLiteral("RunMissedPlan"), m_runMissedPlan);
    RecordXml::addBool(root, QStringLiteral("SyncBeforeRun"), m_syncBeforeRun);
    RecordXml::addBool(root, QStringLiteral("UseConsistencyCheck"), m_useConsistencyCheck);
}

void Base::readFields(const QDomElement& root)
{
    m_id = RecordXml::toRequiredUuid(root, QStringLiteral("Id"));
    m_name = RecordXml::text(root, QStringLiteral("Name"));
    m_storage = RecordXml::toUuid(root, QStringLiteral("Storage"));
    m_isArchive = RecordXml::toBool(root, QStringLiteral("IsArchive"));
    m_schedule.readXml(RecordXml::element(root, QStringLiteral("Schedule")));
    m_notification.readXml(RecordXml::element(root, QStringLiteral("Notification")));
    m_runMissedPlan = RecordXml::toBool(root, QStringLiteral("RunMissedPlan"));
    m_syncBeforeRun = RecordXml::toBool(root, QStringLiteral("SyncBeforeRun"));
    m_useConsistencyCheck = RecordXml::toBool(root, QStringLiteral("UseConsistencyCheck"));
}

} // namespace NVB::Info::Plan
