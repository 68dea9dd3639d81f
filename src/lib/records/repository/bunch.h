#pragma once

#include <QJsonObject>
#include <QSharedPointer>
#include <QString>
#include <QUuid>

#include "records/plan/backup.h"
#include "records/repository/archiveenums.h"

namespace NVB::Info::Repository {

// All the data of one backup plan on one connection; its id is the plan's.
class Bunch
{
public:
    QUuid id() const { return m_id; }
    void setId(const QUuid& id) { m_id = id; }
    QUuid connectionId() const { return m_connectionId; }
    void setConnectionId(const QUuid& id) { m_connectionId = id; }
    // The name stored with the data; shown only when no plan is attached.
    QString displayName() const { return m_displayName; }
    void setDisplayName(const QString& name) { m_displayName = name; }
    NVL::Archive::Type type() const { return m_type; }
    void setType(NVL::Archive::Type type) { m_type = type; }
    // The plan kept with the data; may be null.
    QSharedPointer<NVB::Info::Plan::Backup> backupPlan() const { return m_backupPlan; }
    void setBackupPlan(const QSharedPointer<NVB::Info::Plan::Backup>& plan) { m_backupPlan = plan; }

    QJsonObject toJson() const;
    static QSharedPointer<Bunch> fromJson(const QJsonObject& object);

private:
    QUuid m_id;
    QUuid m_connectionId;
    QString m_displayName;
    NVL::Archive::Type m_type = NVL::Archive::FileLevel;
    QSharedPointer<NVB::Info::Plan::Backup> m_backupPlan;
};

} // namespace NVB::Info::Repository
