#include "incompletestatedelegate.h"

#include <QApplication>
#include <QPainter>
#include <QStyle>
#include <QStyleOptionButton>

namespace NVB::GUI {

void IncompleteStateDelegate::initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const
{
    QStyledItemDelegate::initStyleOption(option, index);
    // The style knows three states only; the marker is drawn over an empty box.
    if (index.data(Qt::CheckStateRole).toInt() == IncompleteState)
        option->checkState = Qt::Unchecked;
}

void IncompleteStateDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                                    const QModelIndex& index) const
{
    QStyledItemDelegate::paint(painter, option, index);
    if (index.column() == 0 && !m_haveCheckOption) {
        m_checkOption = option;
        initStyleOption(&m_checkOption, index);
        m_haveCheckOption = true;
    }
    if (index.data(Qt::CheckStateRole).toInt() != IncompleteState)
        return;

    QStyleOptionViewItem cell = m_haveCheckOption ? m_checkOption : option;
    cell.rect = option.rect;
    cell.features |= QStyleOptionViewItem::HasCheckIndicator;
    const QStyle* style = option.widget ? option.widget->style() : QApplication::style();
    const QRect box = style->subElementRect(QStyle::SE_ItemViewItemCheckIndicator, &cell, option.widget);
    drawMarker(painter, box, option.palette);
}

QPixmap IncompleteStateDelegate::stateImage(int state, const QWidget* widget) const
{
    const QStyle* style = widget ? widget->style() : QApplication::style();
    const int width = style->pixelMetric(QStyle::PM_IndicatorWidth, nullptr, widget);
    const int height = style->pixelMetric(QStyle::PM_IndicatorHeight, nullptr, widget);
    QPixmap picture(width, height);
    picture.fill(Qt::transparent);

    QStyleOptionButton box;
    box.rect = QRect(0, 0, width, height);
    box.palette = widget ? widget->palette() : QApplication::palette();
    box.state = QStyle::State_Enabled;
    switch (state) {
    case Qt::Checked: box.state |= QStyle::State_On; break;
    case Qt::PartiallyChecked: box.state |= QStyle::State_NoChange; break;
    default: box.state |= QStyle::State_Off; break;
    }
    QPainter painter(&picture);
    style->drawPrimitive(QStyle::PE_IndicatorCheckBox, &box, &painter, widget);
    if (state == IncompleteState)
        drawMarker(&painter, box.rect, box.palette);
    return picture;
}

void IncompleteStateDelegate::drawMarker(QPainter* painter, const QRect& box, const QPalette& palette)
{
    const int side = qMax(4, box.width() / 2 - 1);
    QRect marker(0, 0, side, side);
    marker.moveCenter(box.center());
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setPen(Qt::NoPen);
    painter->setBrush(palette.color(QPalette::Highlight));
    painter->drawRoundedRect(marker, 1.5, 1.5);
    painter->restore();
}

} // namespace NVB::GUI
