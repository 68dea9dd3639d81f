#include "storagesupdatewatcher.h"

#include <QAbstractItemModel>
#include <QHBoxLayout>
#include <QKeyEvent>

#include "core/nvldebug.h"
#include "models/basemodel.h"
#include "models/modelmanager.h"
#include "models/models.h"
#include "widgets/elidedlabel.h"
#include "widgets/progresswheel.h"

namespace NVB::GUI::Settings {

namespace ConnectionInfo = NVB::GUI::Models::Table::NvbStorageConnectionModelInfo;

Storages::UpdateWatcher::UpdateWatcher(const QUuid& id, Type type, QWidget* parent)
    : QDialog(parent)
    , m_id(id)
    , m_type(type)
{
    static const char* const titles[]
        = {QT_TR_NOOP("Add New Account"), QT_TR_NOOP("Update Account"), QT_TR_NOOP("Remove Account")};
    const QString title = tr(titles[type]);
    setWindowTitle(title);
    setModal(true);
    auto* layout = new QHBoxLayout(this);
    auto* wheel = new ProgressWheel(this);
    wheel->startAnimate();
    layout->addWidget(wheel);
    auto* label = new ElidedLabel(title, this);
    label->setMinimumWidth(180);
    layout->addWidget(label, 1);

    const auto manager = ModelManager::instance();
    m_model = manager ? manager->create(ConnectionInfo::Type) : nullptr;
    if (!m_model)
        return;
    if (type == Add || type == Update)
        connect(m_model, &QAbstractItemModel::rowsInserted, this, &UpdateWatcher::onRowsInserted);
    if (type == Update)
        connect(m_model, &QAbstractItemModel::dataChanged, this, &UpdateWatcher::onDataChanged);
    if (type == Remove)
        connect(m_model, &QAbstractItemModel::rowsRemoved, this, &UpdateWatcher::onRowsRemoved);
    if (auto* base = qobject_cast<BaseModel*>(m_model.data()))
        connect(base, &BaseModel::error, this, &UpdateWatcher::onModelError);
}

Storages::UpdateWatcher::~UpdateWatcher() = default;

bool Storages::UpdateWatcher::holdsId(int first, int last, const QModelIndex& parent) const
{
    for (int row = first; row <= last; ++row) {
        if (QUuid(m_model->index(row, ConnectionInfo::Column::ID, parent).data().toString()) == m_id)
            return true;
    }
    return false;
}

void Storages::UpdateWatcher::onRowsInserted(const QModelIndex& parent, int first, int last)
{
    if (!holdsId(first, last, parent))
        return;
    NVL::NvlDebug(QStringLiteral("NVB")).info() << QStringLiteral("Add new storage complete: %1").arg(m_id.toString());
    accept();
}

void Storages::UpdateWatcher::onDataChanged(const QModelIndex& topLeft, const QModelIndex& bottomRight)
{
    if (!holdsId(topLeft.row(), bottomRight.row(), topLeft.parent()))
        return;
    NVL::NvlDebug(QStringLiteral("NVB")).info() << QStringLiteral("Update storage complete: %1").arg(m_id.toString());
    accept();
}

void Storages::UpdateWatcher::onRowsRemoved()
{
    const QModelIndexList found = m_model->match(
        m_model->index(0, ConnectionInfo::Column::ID), Qt::DisplayRole, m_id.toString(), 1, Qt::MatchExactly);
    if (!found.isEmpty())
        return;
    NVL::NvlDebug(QStringLiteral("NVB")).info() << QStringLiteral("Remove storage complete: %1").arg(m_id.toString());
    accept();
}

void Storages::UpdateWatcher::onModelError(const QString& text)
{
    m_failure = text;
    reject();
}

void Storages::UpdateWatcher::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Escape) {
        event->accept();
        return;
    }
    QDialog::keyPressEvent(event);
}

} // namespace NVB::GUI::Settings
