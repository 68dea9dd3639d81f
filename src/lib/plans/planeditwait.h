#pragma once

#include <QDialog>
#include <QModelIndex>
#include <QPointer>
#include <QString>
#include <QUuid>
#include <QVector>

class QAbstractItemModel;
class QKeyEvent;

namespace NVB::Common::Communication {
class ICommand;
}

namespace NVB::GUI {

// The small modal wait through which a wizard saves a plan and, if asked,
// starts it. It ends only when the shared plan table shows the saved plan,
// so the caller never looks at a table that doesn't have it yet.
class PlanEditWait : public QDialog
{
    Q_OBJECT
public:
    explicit PlanEditWait(bool isEdit, QWidget* parent = nullptr);

    // Sends the plan and returns when the dialog has ended.
    void setPlan(const QUuid& id, const QString& xml, bool run);
    void execCommand(NVB::Common::Communication::ICommand* command);

    QUuid planId() const { return m_planId; }
    bool isEdit() const { return m_edit; }
    bool isRun() const { return m_run; }

public slots:
    void runPlan();
    void onCommandResult();
    void onRowsInserted(const QModelIndex& parent, int first, int last);
    void onDataChanged(const QModelIndex& topLeft, const QModelIndex& bottomRight, const QVector<int>& roles);

signals:
    void startWait();
    void stopWait();
    void setMessage(QString text);

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    bool isPlanRow(const QAbstractItemModel* model, int row) const;

    QUuid m_planId;
    bool m_edit;
    bool m_run = false;
    // The table has shown the plan; the wait has moved on.
    bool m_reported = false;
    QPointer<QAbstractItemModel> m_table;
};

} // namespace NVB::GUI
