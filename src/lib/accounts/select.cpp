#include "select.h"

#include <QFrame>
#include <QVBoxLayout>

#include "selectitem.h"

namespace NVB::GUI::Settings::Account {

Select::Select(QWidget* parent)
    : QScrollArea(parent)
{
    setMinimumWidth(300);
    setFrameShape(QFrame::NoFrame);
    setWidgetResizable(true);
    auto* inner = new QWidget(this);
    auto* outer = new QVBoxLayout(inner);
    outer->addStretch(1);
    m_tiles = new QVBoxLayout;
    m_tiles->setSpacing(0);
    outer->addLayout(m_tiles);
    outer->addStretch(1);
    setWidget(inner);
}

Select::~Select() = default;

Select::Item* Select::item(int type) const
{
    for (Item* item : m_items) {
        if (item->type() == type)
            return item;
    }
    return nullptr;
}

Select::Item* Select::addItem(int type, const QString& name, bool enabled, const QString& toolTip)
{
    if (!m_items.isEmpty()) {
        auto* line = new QFrame(widget());
        line->setFrameShape(QFrame::HLine);
        line->setStyleSheet(QStringLiteral("margin: 10px; color: lightgray; font-family: Georgia;"));
        m_tiles->addWidget(line);
    }
    auto* item = new Item(type, name, widget());
    item->setEnabled(enabled);
    item->setToolTip(toolTip);
    connect(item, &Item::changed, this, &Select::accountSelected);
    m_tiles->addWidget(item);
    m_items.append(item);
    return item;
}

} // namespace NVB::GUI::Settings::Account
