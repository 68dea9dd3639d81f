#include "valuedelegate.h"

#include <QCoreApplication>

namespace NVB::GUI {

QString ValueDelegate::notAvailable()
{
    return tr("N/A");
}

QString ValueDelegate::codeText(const QVariant& value, const char* context, CodeTexts texts)
{
    bool ok = false;
    const int code = value.toInt(&ok);
    if (ok) {
        for (const auto& [known, text] : texts) {
            if (known == code)
                return QCoreApplication::translate(context, text);
        }
    }
    return notAvailable();
}

QIcon ValueDelegate::icon(const QVariant&) const
{
    return {};
}

QColor ValueDelegate::textColor(const QVariant&) const
{
    return {};
}

void ValueDelegate::initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const
{
    QStyledItemDelegate::initStyleOption(option, index);
    const QVariant value = index.data(Qt::DisplayRole);
    option->text = text(value, option->locale);
    const QIcon cellIcon = icon(value);
    if (!cellIcon.isNull()) {
        option->icon = cellIcon;
        option->features |= QStyleOptionViewItem::HasDecoration;
    }
    const QColor color = textColor(value);
    if (color.isValid()) {
        option->palette.setColor(QPalette::Text, color);
        option->palette.setColor(QPalette::HighlightedText, color);
    }
}

} // namespace NVB::GUI
