#pragma once

#include <QObject>
#include <QPointer>
#include <QUuid>

class QAbstractItemModel;
class QWidget;

namespace NVB::GUI {

// What a plan list's toolbar talks to: it follows the current plan of the
// list, starts, stops and removes it, and tells the toolbar the plan's state.
class PlanControlObject : public QObject
{
    Q_OBJECT
public:
    explicit PlanControlObject(QWidget* parent = nullptr);

    QUuid currentPlan() const { return m_planId; }
    int currentPlanType() const { return m_planType; }

public slots:
    void setCurrentPlan(const QUuid& id, int type);
    // Editing belongs to the caller or a subclass.
    virtual void onEdit();
    void onRemove();
    void onChangePlanStatus(bool forceFull);
    void onChangePlanStatus();
    void onModelDataChanged();
    void onCommandResult();
    void onPlanRemove();

signals:
    void updatedBegin();
    void updatedComplite();
    void updatedError(QString text);
    void statusChanged(int status, int subType);
    void removeCurrentPlan(QUuid id);

private:
    void updateWidget();
    QAbstractItemModel* planTable() const;
    // The row of the current plan in the shared table, or -1.
    int findPlan(QAbstractItemModel* table) const;

    QUuid m_planId;
    int m_planType = 0;
};

} // namespace NVB::GUI
