#pragma once

#include <QJsonObject>
#include <QSharedPointer>
#include <QString>
#include <QUuid>

namespace NVB::Info::Storage {

// One saved storage account as the repository sees it.
class Connection
{
public:
    QUuid id() const { return m_id; }
    void setId(const QUuid& id) { m_id = id; }
    QString displayName() const { return m_displayName; }
    void setDisplayName(const QString& name) { m_displayName = name; }
    // The provider, a value of NVL::Cloud::Type.
    int type() const { return m_type; }
    void setType(int type) { m_type = type; }
    bool syncInProgress() const { return m_syncInProgress; }
    void setSyncInProgress(bool running) { m_syncInProgress = running; }

    QJsonObject toJson() const;
    static QSharedPointer<Connection> fromJson(const QJsonObject& object);

private:
    QUuid m_id;
    QString m_displayName;
    int m_type = 0;
    bool m_syncInProgress = false;
};

} // namespace NVB::Info::Storage
