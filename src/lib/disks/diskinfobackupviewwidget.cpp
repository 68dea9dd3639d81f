#include "diskinfobackupviewwidget.h"

#include <QHeaderView>
#include <QTreeView>
#include <QVBoxLayout>

#include "diskinfobackupmodel.h"

namespace NVB::GUI {

DiskInfoBackupViewWidget::DiskInfoBackupViewWidget(QWidget* parent)
    : QWidget(parent)
    , m_view(new QTreeView(this))
{
    m_view->setObjectName(QStringLiteral("diskTree"));
    m_view->setUniformRowHeights(true);
    m_view->header()->setStretchLastSection(true);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_view);
}

void DiskInfoBackupViewWidget::setModel(DiskInfoBackupModel* model)
{
    if (m_model)
        disconnect(m_model, nullptr, this, nullptr);
    m_model = model;
    m_view->setModel(model);
    if (!model)
        return;
    connect(model, &QAbstractItemModel::dataChanged, this, &DiskInfoBackupViewWidget::changed);
    // A fresh load shows every volume at once: the tree is short.
    connect(model, &QAbstractItemModel::modelReset, m_view, &QTreeView::expandAll);
    connect(model, &QAbstractItemModel::modelReset, this, &DiskInfoBackupViewWidget::changed);
    m_view->expandAll();
}

bool DiskInfoBackupViewWidget::isComplete() const
{
    if (!m_model)
        return false;
    for (int row = 0; row < m_model->rowCount(); ++row) {
        if (m_model->index(row, 0).data(DiskInfoModel::EnabledRole).toInt() != Qt::Unchecked)
            return true;
    }
    return false;
}

} // namespace NVB::GUI
