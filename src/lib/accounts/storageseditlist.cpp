#include "storageseditlist.h"

#include <QAbstractItemModel>
#include <QHBoxLayout>
#include <QItemSelectionModel>
#include <QListView>
#include <QTimer>
#include <QToolButton>
#include <QVBoxLayout>

#include "app/application.h"
#include "app/icons/iconmanager.h"
#include "cloud/cloudtype.h"
#include "models/models.h"

namespace NVB::GUI::Settings {

namespace Column = NVB::GUI::Models::Table::NvbStorageConnectionModelInfo::Column;

namespace {

QToolButton* toolButton(const QString& text, const QString& tip, QWidget* parent)
{
    auto* button = new QToolButton(parent);
    button->setText(text);
    button->setToolTip(tip);
    button->setAutoRaise(true);
    button->setMinimumWidth(28);
    return button;
}

} // namespace

Storages::EditList::EditList(bool readOnly, QWidget* parent)
    : QWidget(parent)
    , m_readOnly(readOnly)
{
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    m_view = new QListView(this);
    m_view->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_view->setSelectionMode(QAbstractItemView::SingleSelection);
    m_view->setIconSize(QSize(24, 24));
    m_view->setMinimumWidth(200);
    layout->addWidget(m_view, 1);

    auto* buttons = new QHBoxLayout;
    buttons->setSpacing(2);
    m_add = toolButton(QStringLiteral("+"), tr("Add new storage"), this);
    m_remove = toolButton(QStringLiteral("\u2212"), tr("Delete the selected storage"), this);
    m_edit = toolButton(tr("Edit Account"), tr("Edit Account"), this);
    m_add->setIcon(IconManager::icon(IconManager::Add));
    m_edit->setIcon(IconManager::icon(IconManager::Edit));
    m_edit->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    m_remove->setEnabled(false);
    m_edit->setEnabled(false);
    buttons->addWidget(m_add);
    buttons->addWidget(m_remove);
    buttons->addWidget(m_edit);
    buttons->addStretch(1);
    layout->addLayout(buttons);
    m_add->setVisible(!readOnly);
    m_remove->setVisible(!readOnly);
    m_edit->setVisible(!readOnly);

    connect(m_add, &QToolButton::clicked, this, &EditList::addItem);
    connect(m_remove, &QToolButton::clicked, this, [this] {
        if (currentIndex().isValid())
            emit removeItem(currentIndex());
    });
    connect(m_edit, &QToolButton::clicked, this, [this] {
        if (currentIndex().isValid())
            emit editItem(currentIndex());
    });
    connect(m_view, &QListView::doubleClicked, this, [this](const QModelIndex& index) {
        if (!m_readOnly && index.isValid())
            emit editItem(index);
    });
}

Storages::EditList::~EditList() = default;

void Storages::EditList::setModel(QAbstractItemModel* model)
{
    m_view->setModel(model);
    m_view->setModelColumn(Column::DisplayName);
    connect(m_view->selectionModel(), &QItemSelectionModel::currentChanged, this, &EditList::onCurrentChanged);
    // The current row can move or vanish when the engine changes the list;
    // find the remembered account again once the view has caught up.
    auto later = [this] { QTimer::singleShot(0, this, &EditList::setCurrentItem); };
    connect(model, &QAbstractItemModel::dataChanged, this, later);
    connect(model, &QAbstractItemModel::rowsInserted, this, later);
    connect(model, &QAbstractItemModel::rowsRemoved, this, later);
}

QAbstractItemModel* Storages::EditList::model() const
{
    return m_view->model();
}

QModelIndex Storages::EditList::currentIndex() const
{
    return m_view->currentIndex();
}

void Storages::EditList::setCurrentIndex(const QModelIndex& index)
{
    if (!index.isValid()) {
        m_view->selectionModel()->clearCurrentIndex();
        m_view->clearSelection();
        return;
    }
    m_view->setCurrentIndex(index);
}

void Storages::EditList::onCurrentChanged(const QModelIndex& current)
{
    m_currentId = current.isValid()
        ? QUuid(current.model()->index(current.row(), Column::ID, current.parent()).data().toString())
        : QUuid();
    onSetCurrentItem(current);
    emit currentItem(current);
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
    if (m_view->currentIndex() != index)
        m_view->setCurrentIndex(index);
    else
        emit currentItem(index);
}

void Storages::EditList::onSetCurrentItem(const QModelIndex& index)
{
    m_edit->setEnabled(index.isValid());
    bool removable = index.isValid();
    // The managed service owns every account but the local ones.
    if (removable && !Application::isStandalon())
        removable = index.model()->index(index.row(), Column::Type, index.parent()).data().toInt()
            == int(NVL::Cloud::Type::FileSystem);
    m_remove->setEnabled(removable);
}

} // namespace NVB::GUI::Settings
