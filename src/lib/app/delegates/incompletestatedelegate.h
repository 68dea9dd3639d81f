#pragma once

#include <QPixmap>
#include <QStyleOptionViewItem>
#include <QStyledItemDelegate>

namespace NVB::GUI {

// Paints the check trees of files. Besides the three states of a check box a
// node may be "incomplete" (1001): something below it is wanted though the
// node itself is not. Such a node shows an empty box with a marker in it.
class IncompleteStateDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    static constexpr int IncompleteState = 1001;

    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;

    // The picture of a check box in one of the states 0, 1, 2 and 1001, for
    // the legend that explains them.
    QPixmap stateImage(int state, const QWidget* widget = nullptr) const;

protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override;

private:
    static void drawMarker(QPainter* painter, const QRect& box, const QPalette& palette);

    // Taken from the first cell of column 0 that is painted and kept, so that
    // every row measures its box the same way.
    mutable QStyleOptionViewItem m_checkOption;
    mutable bool m_haveCheckOption = false;
};

} // namespace NVB::GUI
