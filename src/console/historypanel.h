#pragma once

#include <QSharedPointer>
#include <QTemporaryFile>
#include <QUuid>
#include <QWidget>

class QComboBox;
class QLabel;
class QPushButton;
class QSortFilterProxyModel;
class QStyledItemDelegate;
class QTableView;

namespace NVB::GUI {
class HistoryGetByFileModel;
class HistoryGetByPlanModel;
} // namespace NVB::GUI

namespace NVB::Console {

// The history of the selected plan (or of every plan), by run or by file,
// for a period, with a result filter and an export to CSV.
class HistoryPanel : public QWidget
{
    Q_OBJECT

public:
    explicit HistoryPanel(QWidget* parent = nullptr);

    QTableView* view() const { return m_view; }
    QComboBox* kindBox() const { return m_kind; }
    QComboBox* periodBox() const { return m_period; }
    QComboBox* resultBox() const { return m_result; }
    QPushButton* exportButton() const { return m_export; }
    NVB::GUI::HistoryGetByPlanModel* planModel() const { return m_byPlan; }
    NVB::GUI::HistoryGetByFileModel* fileModel() const { return m_byFile; }

    // Where "Export to CSV" saves without asking; empty: a file dialog asks.
    void setExportTarget(const QString& path) { m_exportTarget = path; }

public slots:
    void setPlan(const QUuid& id);
    void reload();
    void onExport();

signals:
    void exported(const QString& path);

private slots:
    void onExportReady(QSharedPointer<QTemporaryFile> file);
    void onError(const QString& text);

private:
    void fillResults();
    bool byFile() const;

    QUuid m_plan;
    QString m_exportTarget;
    QComboBox* m_kind;
    QComboBox* m_period;
    QComboBox* m_result;
    QPushButton* m_export;
    QLabel* m_message;
    QTableView* m_view;
    NVB::GUI::HistoryGetByPlanModel* m_byPlan;
    NVB::GUI::HistoryGetByFileModel* m_byFile;
    QSortFilterProxyModel* m_planFilter;
    QStyledItemDelegate* m_resultDelegate;
    QStyledItemDelegate* m_sizeDelegate;
};

} // namespace NVB::Console
