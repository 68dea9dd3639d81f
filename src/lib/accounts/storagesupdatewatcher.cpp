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
namespace PlanInfo = NVB::GUI::Models::Table::NvbPlanModelInfo;

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

QString Storages::UpdateWatcher::removalRefusal(const QUuid& account)
{
    // The removal watch has no cancel and no timeout, and the engine answers
    // a removal it refuses with no model change at all; so the refusal is
    // found here, before anything is sent.
    const auto manager = ModelManager::instance();
    QAbstractItemModel* plans = manager ? manager->create(PlanInfo::Type) : nullptr;
    if (!plans)
        return QString();
    QStringList names;
    for (int row = 0; row < plans->rowCount(); ++row) {
        if (QUuid(plans->index(row, PlanInfo::Column::StorageID).data().toString()) == account)
            names << plans->index(row, PlanInfo::Column::Name).data().toString();
    }
    if (names.isEmpty())
        return QString();
    names.sort(Qt::CaseInsensitive);
    // The engine's own words, then the plans it does not name.
    return tr("The storage account is used by %1 plans; change or remove them first").arg(names.size())
        + QStringLiteral("\n\n") + tr("Plans: %1").arg(names.join(QStringLiteral(", ")));
}

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
