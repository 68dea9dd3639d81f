#pragma once

#include <QStyledItemDelegate>

namespace NVB::GUI {

// The paths of a plan as a small HTML table, one path a row.
class PlanItemsDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    static QString toText(const QVariant& value, const QLocale& locale = QLocale());

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
};

} // namespace NVB::GUI
