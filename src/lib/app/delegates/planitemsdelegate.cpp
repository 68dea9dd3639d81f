#include "planitemsdelegate.h"

#include <QAbstractTextDocumentLayout>
#include <QApplication>
#include <QPainter>
#include <QTextDocument>

namespace NVB::GUI {

namespace {

// Volumes and shares are listed under these roots; a user knows them by the
// path below.
QString shownPath(QString path)
{
    for (const QLatin1String root : {QLatin1String("/NVB_SHARES/"), QLatin1String("/NVB_VOLUMES/")}) {
        if (path.startsWith(root)) {
            path.remove(0, root.size());
            break;
        }
    }
    return path;
}

void prepare(QTextDocument& document, const QStyleOptionViewItem& option, const QModelIndex& index)
{
    document.setDefaultFont(option.font);
    document.setDocumentMargin(2);
    document.setHtml(PlanItemsDelegate::toText(index.data(Qt::DisplayRole)));
}

} // namespace

QString PlanItemsDelegate::toText(const QVariant& value, const QLocale&)
{
    QString html = QStringLiteral("<table>");
    for (const QString& path : value.toStringList())
        html += QStringLiteral("<tr><td>") + shownPath(path).toHtmlEscaped() + QStringLiteral("</tb</tr>");
    html += QStringLiteral("</table>");
    return html;
}

void PlanItemsDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const
{
    QStyleOptionViewItem cell = option;
    initStyleOption(&cell, index);
    cell.text.clear();
    const QStyle* style = cell.widget ? cell.widget->style() : QApplication::style();
    style->drawControl(QStyle::CE_ItemViewItem, &cell, painter, cell.widget);

    QTextDocument document;
    prepare(document, cell, index);
    QAbstractTextDocumentLayout::PaintContext context;
    context.palette = cell.palette;
    if (cell.state & QStyle::State_Selected)
        context.palette.setColor(QPalette::Text, cell.palette.color(QPalette::HighlightedText));
    painter->save();
    painter->translate(cell.rect.topLeft());
    painter->setClipRect(cell.rect.translated(-cell.rect.topLeft()));
    document.documentLayout()->draw(painter, context);
    painter->restore();
}

QSize PlanItemsDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const
{
    QTextDocument document;
    prepare(document, option, index);
    return QSize(int(document.idealWidth()), int(document.size().height()));
}

} // namespace NVB::GUI
