#include "storageseditlist.h"

#include <QAbstractItemModel>
#include <QItemSelectionModel>
#include <QListView>
#include <QTimer>
#include <QToolButton>

#include "app/application.h"
#include "app/icons/iconmanager.h"
#include "cloud/cloudtype.h"
#include "models/models.h"

namespace NVB::GUI::Settings {

namespace Column = NVB::GUI::Models::Table::NvbStorageConnectionModelInfo::Column;

Storages::EditList::EditList(bool readOnly, QWidget* parent)
    : EditListWidget(readOnly, parent)
    , m_edit(new QToolButton(this))
{
    view()->setIconSize(QSize(24, 24));
    view()->setMinimumWidth(200);
    addButton()->setToolTip(tr("Add new storage"));
    addButton()->setIcon(IconManager::icon(IconManager::Add));
    removeButton()->setToolTip(tr("Delete the selected storage"));
    m_edit->setText(tr("Edit Account"));
    m_edit->setToolTip(tr("Edit Account"));
    m_edit->setIcon(IconManager::icon(IconManager::Edit));
    m_edit->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    m_edit->setEnabled(false);
    m_edit->setVisible(!readOnly);
    addToolButton(m_edit);

    // Connected before any owner's slot, so that the buttons are right when
    // the owner hears of the new row.
    connect(this, &EditListWidget::currentItem, this, &EditList::onCurrentItem);
    connect(m_edit, &QToolButton::clicked, this, [this] {
        if (currentIndex().isValid())
            emit editItem(currentIndex());
    });
}

Storages::EditList::~EditList() = default;

void Storages::EditList::setModel(QAbstractItemModel* model)
{
    EditListWidget::setModel(model, Column::DisplayName);
    if (!model)
        return;
    // The current row can move or vanish when the engine changes the list;
    // find the remembered account again once the view has caught up.
    auto later = [this] { QTimer::singleShot(0, this, &EditList::setCurrentItem); };
    connect(model, &QAbstractItemModel::dataChanged, this, later);
    connect(model, &QAbstractItemModel::rowsInserted, this, later);
    connect(model, &QAbstractItemModel::rowsRemoved, this, later);
}

void Storages::EditList::onCurrentItem(const QModelIndex& current)
{
    m_currentId = current.isValid()
        ? QUuid(current.model()->index(current.row(), Column::ID, current.parent()).data().toString())
        : QUuid();
    onSetCurrentItem(current);
}

void Storages::EditList::setCurrentItem()
{
    QAbstractItemModel* list = model();
    if (!list || m_currentId.isNull())
        return;
    const QModelIndexList found
        = list->match(list->index(0, Column::ID), Qt::DisplayRole, m_currentId.toString(), 1, Qt::MatchExactly);
    if (found.isEmpty()) {
        m_currentId = QUuid();
        setCurrentIndex(QModelIndex());
        onSetCurrentItem(QModelIndex());
        emit currentItem(QModelIndex());
        return;
    }
    const QModelIndex index = list->index(found.first().row(), Column::DisplayName);
    if (currentIndex() != index)
        setCurrentIndex(index);
    else
        emit currentItem(index);
}

void Storages::EditList::onSetCurrentItem(const QModelIndex& index)
{
    m_edit->setEnabled(!isReadOnly() && index.isValid());
    updateButtons();
}

bool Storages::EditList::canRemove(const QModelIndex& index) const
{
    if (!index.isValid())
        return false;
    // The managed service owns every account but the local ones.
    return Application::isStandalon()
        || index.model()->index(index.row(), Column::Type, index.parent()).data().toInt()
        == int(NVL::Cloud::Type::FileSystem);
}

} // namespace NVB::GUI::Settings
