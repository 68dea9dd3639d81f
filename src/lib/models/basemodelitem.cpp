#include "models/basemodelitem.h"

namespace NVB::GUI {

BaseModelItem::BaseModelItem(BaseModelItem* parent, ItemStatus status, QObject* parentObject)
    : QObject(parentObject)
    , m_parent(parent)
    , m_status(status)
{ }

BaseModelItem::~BaseModelItem()
{
    qDeleteAll(m_children);
    m_children.clear();
}

Qt::ItemFlags BaseModelItem::flags() const
{
    return Qt::ItemIsEnabled | Qt::ItemIsSelectable;
}

void BaseModelItem::appendChild(BaseModelItem* item)
{
    if (!item)
        return;
    // The child is in the list before anyone hears of it; the model announces
    // the row afterwards.
    m_children.append(item);
    onInsertItem(m_children.size() - 1, item);
}

BaseModelItem* BaseModelItem::child(int row) const
{
    return row >= 0 && row < m_children.size() ? m_children.at(row) : nullptr;
}

int BaseModelItem::childCount() const
{
    return m_children.size();
}

BaseModelItem* BaseModelItem::parentItem() const
{
    return m_parent;
}

int BaseModelItem::row() const
{
    if (!m_parent)
        return 0;
    return m_parent->m_children.indexOf(const_cast<BaseModelItem*>(this));
}

void BaseModelItem::removeMe()
{
    if (m_parent)
        m_parent->m_children.removeOne(this);
    deleteLater();
}

void BaseModelItem::removeAllChild()
{
    // Each removal, when a model carries it out, moves the next child to row 0.
    const QList<BaseModelItem*> children = m_children;
    for (BaseModelItem* item : children)
        onRemoveItem(0, item);
}

void BaseModelItem::changeStatus(ItemStatus status)
{
    if (status == m_status)
        return;
    m_status = status;
    onUpdateItem(row(), this);
}

void BaseModelItem::changeUpdateCurrentItem(bool inProgress)
{
    if (inProgress == m_updateInProgress)
        return;
    m_updateInProgress = inProgress;
    onUpdateItem(row(), this);
}

void BaseModelItem::onInsertItem(int row, BaseModelItem* item)
{
    if (!item)
        return;
    if (m_parent)
        m_parent->onInsertItem(row, item);
    else
        emit insertItem(row, item);
}

void BaseModelItem::onRemoveItem(int row, BaseModelItem* item)
{
    if (!item)
        return;
    if (m_parent)
        m_parent->onRemoveItem(row, item);
    else
        emit removeItem(row, item);
}

void BaseModelItem::onUpdateItem(int row, BaseModelItem* item)
{
    if (!item)
        return;
    if (m_parent)
        m_parent->onUpdateItem(row, item);
    else
        emit updateItem(row, item);
}

void BaseModelItem::onError(const QString& text)
{
    if (m_parent)
        m_parent->onError(text);
    else
        emit error(text);
}

} // namespace NVB::GUI
