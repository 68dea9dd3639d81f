#include "widgets/editlistwidget.h"

#include <QAbstractItemModel>
#include <QHBoxLayout>
#include <QItemSelectionModel>
#include <QListView>
#include <QToolButton>
#include <QVBoxLayout>

namespace NVB::GUI {

EditListWidget::EditListWidget(bool readOnly, QWidget* parent)
    : QWidget(parent)
    , m_readOnly(readOnly)
    , m_view(new QListView(this))
    , m_add(new QToolButton(this))
    , m_remove(new QToolButton(this))
    , m_buttons(new QHBoxLayout())
{
    m_view->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_view->setSelectionMode(QAbstractItemView::SingleSelection);
    m_view->setUniformItemSizes(true);

    m_add->setText(QStringLiteral("+"));
    m_add->setToolTip(tr("Add"));
    m_add->setAutoRaise(true);
    m_remove->setText(QStringLiteral("\u2212"));
    m_remove->setToolTip(tr("Remove"));
    m_remove->setAutoRaise(true);
    m_remove->setEnabled(false);

    m_buttons->setContentsMargins(0, 0, 0, 0);
    m_buttons->setSpacing(2);
    m_buttons->addWidget(m_add);
    m_buttons->addWidget(m_remove);
    m_buttons->addStretch(1);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(2);
    layout->addWidget(m_view, 1);
    layout->addLayout(m_buttons);

    m_add->setVisible(!readOnly);
    m_remove->setVisible(!readOnly);

    connect(m_add, &QToolButton::clicked, this, &EditListWidget::addItem);
    connect(m_remove, &QToolButton::clicked, this, &EditListWidget::onRemoveClicked);
    connect(m_view, &QListView::doubleClicked, this, [this](const QModelIndex& index) {
        if (!m_readOnly && index.isValid())
            emit editItem(index);
    });
}

void EditListWidget::setModel(QAbstractItemModel* model, int column)
{
    if (QAbstractItemModel* old = m_view->model())
        disconnect(old, nullptr, this, nullptr);
    m_view->setModel(model);
    m_view->setModelColumn(column);
    if (model)
        connect(model, &QAbstractItemModel::modelReset, this, &EditListWidget::onModelReset);
    if (QItemSelectionModel* selection = m_view->selectionModel())
        connect(selection, &QItemSelectionModel::currentChanged, this, &EditListWidget::onCurrentChanged);
    updateButtons();
}

QAbstractItemModel* EditListWidget::model() const
{
    return m_view->model();
}

QModelIndex EditListWidget::currentIndex() const
{
    return m_view->currentIndex();
}

void EditListWidget::setCurrentIndex(const QModelIndex& index)
{
    if (index.isValid()) {
        m_view->setCurrentIndex(index);
    } else if (QItemSelectionModel* selection = m_view->selectionModel()) {
        // No row is current: nothing may stay highlighted either.
        selection->clearCurrentIndex();
        selection->clearSelection();
    }
    updateButtons();
}

void EditListWidget::addToolButton(QToolButton* button)
{
    if (!button)
        return;
    button->setParent(this);
    button->setAutoRaise(true);
    // After add and remove, before the stretch.
    m_buttons->insertWidget(m_buttons->count() - 1, button);
}

void EditListWidget::onCurrentChanged(const QModelIndex& current)
{
    updateButtons();
    emit currentItem(current);
}

void EditListWidget::onRemoveClicked()
{
    const QModelIndex index = currentIndex();
    if (index.isValid())
        emit removeItem(index);
}

void EditListWidget::onModelReset()
{
    updateButtons();
    emit currentItem(currentIndex());
}

bool EditListWidget::canRemove(const QModelIndex& index) const
{
    return index.isValid();
}

void EditListWidget::updateButtons()
{
    m_remove->setEnabled(!m_readOnly && canRemove(currentIndex()));
}

} // namespace NVB::GUI
