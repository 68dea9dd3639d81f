#pragma once

#include <QDomDocument>
#include <QString>
#include <QUuid>

#include "records/plan/notification.h"
#include "records/plan/planenums.h"
#include "records/plan/schedule.h"

namespace NVB::Info::Plan {

// What every plan has. type() and subtype() are crossed with the names of
// their enumerations on purpose: type() answers a SubType (0 file, 1 disk
// image) and subtype() a Type (1 backup, 2 restore). Every caller relies on it.
class Base
{
public:
    virtual ~Base();
    // The plan document that travels to the engine; Factory::create reads it.
    virtual QString toXml() const;

    QUuid id() const { return m_id; }
    void setId(const QUuid& id) { m_id = id; }
    QString name() const { return m_name; }
    void setName(const QString& name) { m_name = name; }
    int type() const { return static_cast<int>(m_content); }
    int subtype() const { return static_cast<int>(m_job); }
    QUuid storage() const { return m_storage; }
    void setStorage(const QUuid& storage) { m_storage = storage; }
    bool isArchive() const { return m_isArchive; }
    void setIsArchive(bool archive) { m_isArchive = archive; }
    Schedule& schedule() { return m_schedule; }
    const Schedule& schedule() const { return m_schedule; }
    Notification& notification() { return m_notification; }
    const Notification& notification() const { return m_notification; }
    bool runMuissedPlan() const { return m_runMissedPlan; }
    void setRunMissedPlan(bool run) { m_runMissedPlan = run; }
    bool syncBeforeRun() const { return m_syncBeforeRun; }
    void setSyncBeforeRun(bool sync) { m_syncBeforeRun = sync; }
    bool useConsistencyCheck() const { return m_useConsistencyCheck; }
    void setUseConsistencyCheck(bool use) { m_useConsistencyCheck = use; }

    // The root element that names this class in a plan document.
    virtual QString rootElement() const = 0;
    // Throws a QString naming the faulty element; Factory::create catches it.
    virtual void readFields(const QDomElement& root);

protected:
    Base(Type job, SubType content);
    virtual void writeFields(QDomElement& root) const;

private:
    Type m_job;
    SubType m_content;
    QUuid m_id;
    QString m_name;
    QUuid m_storage;
    bool m_isArchive = true;
    Schedule m_schedule;
    Notification m_notification;
    bool m_runMissedPlan = true;
    bool m_syncBeforeRun = false;
    bool m_useConsistencyCheck = false;
};

} // namespace NVB::Info::Plan
