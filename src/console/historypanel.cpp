#include "historypanel.h"

#include <QComboBox>
#include <QFile>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QSortFilterProxyModel>
#include <QTableView>
#include <QVBoxLayout>

#include "app/delegates/planresultdelegate.h"
#include "app/delegates/sizedelegate.h"
#include "models/models.h"
#include "plans/history/historygetbyfilemodel.h"
#include "plans/history/historygetbyplanmodel.h"

namespace NVB::Console {

namespace PlanColumn = NVB::GUI::Models::Table::HistoryGetByPlanModelInfo::Column;
namespace FileColumn = NVB::GUI::Models::Table::HistoryGetByFileModelInfo::Column;

HistoryPanel::HistoryPanel(QWidget* parent)
    : QWidget(parent)
    , m_kind(new QComboBox(this))
    , m_period(new QComboBox(this))
    , m_result(new QComboBox(this))
    , m_export(new QPushButton(tr("Export to CSV"), this))
    , m_message(new QLabel(this))
    , m_view(new QTableView(this))
    , m_byPlan(new NVB::GUI::HistoryGetByPlanModel(this))
    , m_byFile(new NVB::GUI::HistoryGetByFileModel(this))
    , m_planFilter(new QSortFilterProxyModel(this))
    , m_resultDelegate(new NVB::GUI::PlanResultDelegate(this))
    , m_sizeDelegate(new NVB::GUI::SizeDelegate(this))
{
    m_kind->addItem(tr("By run"));
    m_kind->addItem(tr("By file"));
    // The values are the periods the models send.
    m_period->addItem(tr("All"), 0);
    m_period->addItem(tr("Last day"), 1);
    m_period->addItem(tr("Last week"), 2);
    m_period->addItem(tr("Last month"), 3);
    m_export->setObjectName(QStringLiteral("exportHistory"));
    m_message->setStyleSheet(QStringLiteral("color: #c62828;"));
    m_message->hide();

    m_planFilter->setSourceModel(m_byPlan);
    m_planFilter->setFilterKeyColumn(PlanColumn::Result);
    m_planFilter->setFilterRole(Qt::DisplayRole);
    m_view->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_view->verticalHeader()->hide();
    m_view->horizontalHeader()->setStretchLastSection(true);

    auto* bar = new QHBoxLayout;
    bar->addWidget(m_kind);
    bar->addWidget(new QLabel(tr("Period:"), this));
    bar->addWidget(m_period);
    bar->addWidget(new QLabel(tr("Result:"), this));
    bar->addWidget(m_result);
    bar->addStretch(1);
    bar->addWidget(m_export);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(bar);
    layout->addWidget(m_message);
    layout->addWidget(m_view);

    fillResults();
    connect(m_kind, qOverload<int>(&QComboBox::currentIndexChanged), this, [this] {
        fillResults();
        reload();
    });
    connect(m_period, qOverload<int>(&QComboBox::currentIndexChanged), this, &HistoryPanel::reload);
    connect(m_result, qOverload<int>(&QComboBox::currentIndexChanged), this, &HistoryPanel::reload);
    connect(m_export, &QPushButton::clicked, this, &HistoryPanel::onExport);
    connect(m_byPlan, &NVB::GUI::HistoryGetByPlanModel::savePlanReady, this, &HistoryPanel::onExportReady);
    connect(m_byFile, &NVB::GUI::HistoryGetByFileModel::saveFileReady, this, &HistoryPanel::onExportReady);
    connect(m_byPlan, &NVB::GUI::BaseModel::error, this, &HistoryPanel::onError);
    connect(m_byFile, &NVB::GUI::BaseModel::error, this, &HistoryPanel::onError);
}

bool HistoryPanel::byFile() const
{
    return m_kind->currentIndex() == 1;
}

void HistoryPanel::fillResults()
{
    const QSignalBlocker blocker(m_result);
    m_result->clear();
    m_result->addItem(tr("Any result"), 0);
    if (byFile()) {
        // The engine filters file rows by operation.
        m_result->addItem(tr("Copied"), 1);
        m_result->addItem(tr("Restored"), 2);
        m_result->addItem(tr("Failed"), 3);
        m_result->addItem(tr("Skipped"), 4);
        m_result->addItem(tr("Removed"), 5);
    } else {
        m_result->addItem(tr("Success"), 6);
        m_result->addItem(tr("Warning"), 7);
        m_result->addItem(tr("Failed"), 8);
        m_result->addItem(tr("Interrupted"), 5);
    }
}

void HistoryPanel::setPlan(const QUuid& id)
{
    m_plan = id;
    reload();
}

void HistoryPanel::reload()
{
    m_message->hide();
    const int period = m_period->currentData().toInt();
    const int result = m_result->currentData().toInt();
    if (byFile()) {
        m_view->setModel(m_byFile);
        m_view->setItemDelegateForColumn(PlanColumn::Size, nullptr);
        m_view->setItemDelegateForColumn(FileColumn::Size, m_sizeDelegate);
        m_byFile->load(period, m_plan, result);
    } else {
        // Runs are few a page; their result is filtered here.
        m_planFilter->setFilterRegularExpression(result == 0 ? QString() : QStringLiteral("^%1$").arg(result));
        m_view->setModel(m_planFilter);
        m_view->setItemDelegateForColumn(PlanColumn::Result, m_resultDelegate);
        m_view->setItemDelegateForColumn(PlanColumn::Size, m_sizeDelegate);
        m_byPlan->load(period, m_plan);
    }
}

void HistoryPanel::onExport()
{
    m_export->setEnabled(false);
    const int period = m_period->currentData().toInt();
    if (byFile())
        m_byFile->issueFileExport(period, m_plan, m_result->currentData().toInt(), 0);
    else
        m_byPlan->issuePlanExport(period, m_plan, 0);
}

void HistoryPanel::onExportReady(QSharedPointer<QTemporaryFile> file)
{
    m_export->setEnabled(true);
    QString target = m_exportTarget;
    if (target.isEmpty())
        target = QFileDialog::getSaveFileName(
            this, tr("Export to CSV"), QStringLiteral("history.csv"), tr("CSV files (*.csv)"));
    if (target.isEmpty() || !file)
        return;
    QFile::remove(target);
    if (!QFile::copy(file->fileName(), target)) {
        onError(tr("Cannot save the history to %1").arg(target));
        return;
    }
    emit exported(target);
}

void HistoryPanel::onError(const QString& text)
{
    m_export->setEnabled(true);
    m_message->setText(text);
    m_message->show();
}

} // namespace NVB::Console
