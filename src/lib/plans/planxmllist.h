#pragma once

#include <QDomDocument>
#include <QJsonDocument>
#include <QMap>
#include <QObject>
#include <QPointer>
#include <QSharedPointer>
#include <QUuid>

#include "records/plan/base.h"

namespace NVB::GUI {

// Each plan's XML as the engine last sent it, and the record made from it on
// demand. Filled only on request (getPlan); a plan held here follows its
// updates, a plan not held stays unheld.
class PlanXmlList : public QObject
{
    Q_OBJECT
public:
    static QPointer<PlanXmlList> instance();

    bool containts(const QUuid& id) const;
    // An empty document for a plan not held.
    QDomDocument planXml(const QUuid& id) const;
    // Null without XML or when the XML makes no plan. Stays owned by the
    // list and is good only until the next update or removal of that plan,
    // so callers must not keep it across the event loop.
    NVB::Info::Plan::Base* plan(const QUuid& id);

    QUuid lastCreatedPlan() const { return m_lastCreatedPlan; }
    void setLastCreatedPlan(const QUuid& id);

public slots:
    void getPlan(const QUuid& id);

signals:
    void beginLoad(QUuid id);
    void complite(QUuid id);
    void update(QUuid id);
    void error(QString text);

private slots:
    void onCommandResult();
    void onNotification(const QJsonDocument& document);

private:
    PlanXmlList();
    ~PlanXmlList() override;

    QMap<QUuid, QDomDocument> m_documents;
    QMap<QUuid, QSharedPointer<NVB::Info::Plan::Base>> m_plans;
    QUuid m_lastCreatedPlan;
};

} // namespace NVB::GUI
