#include "diskspanel.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QPushButton>
#include <QTreeView>
#include <QVBoxLayout>

#include "disks/diskinfobackupmodel.h"
#include "models/models.h"

namespace NVB::Console {

namespace Column = NVB::GUI::Models::Tree::NvbDiskInfoModelInfo::Column;

DisksPanel::DisksPanel(QWidget* parent)
    : QWidget(parent)
    , m_model(new NVB::GUI::DiskInfoBackupModel(this))
    , m_view(new QTreeView(this))
    , m_message(new QLabel(this))
{
    m_view->setModel(m_model);
    // Ids are for the plans, not for reading.
    m_view->setColumnHidden(Column::DiskId, true);
    m_view->setColumnHidden(Column::VolumeId, true);
    m_view->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    m_message->setStyleSheet(QStringLiteral("color: #c62828;"));
    m_message->hide();
    auto* refresh = new QPushButton(tr("Refresh"), this);
    refresh->setObjectName(QStringLiteral("refreshDisks"));
    auto* bar = new QHBoxLayout;
    bar->addWidget(m_message, 1);
    bar->addWidget(refresh);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(bar);
    layout->addWidget(m_view);
    connect(refresh, &QPushButton::clicked, this, &DisksPanel::reload);
    connect(m_model, &NVB::GUI::DiskInfoModel::error, this, [this](const QString& text) {
        m_message->setText(text);
        m_message->show();
    });
    connect(m_model, &NVB::GUI::DiskInfoModel::complite, this, [this] {
        m_message->hide();
        m_view->expandAll();
    });
}

void DisksPanel::reload()
{
    m_model->init();
}

} // namespace NVB::Console
