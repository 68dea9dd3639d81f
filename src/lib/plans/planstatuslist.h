#pragma once

#include <QJsonDocument>
#include <QMap>
#include <QObject>
#include <QPointer>
#include <QString>
#include <QUuid>
#include <QVariant>

namespace NVB::GUI {

// The latest progress message of each running plan, for the main window's
// progress column. An entry goes when its plan leaves the running state.
class PlanStatusList : public QObject
{
    Q_OBJECT
public:
    static QPointer<PlanStatusList> instance();

    // An empty map for a plan without progress.
    QMap<QString, QVariant> status(const QUuid& id) const;
    void removeStatus(const QUuid& id);

signals:
    void updated(QUuid id, QMap<QString, QVariant> message);

private slots:
    void onNotification(const QJsonDocument& document);

private:
    PlanStatusList();
    ~PlanStatusList() override;

    QMap<QUuid, QMap<QString, QVariant>> m_statuses;
};

} // namespace NVB::GUI
