#pragma once

#include <initializer_list>
#include <utility>

#include <QIcon>
#include <QStyledItemDelegate>

namespace NVB::GUI {

// Base of the delegates that turn a cell's raw value into text (and at times
// an icon or a colour). Subclasses keep a static toText() that other code calls
// directly, and answer the per-cell text through text().
class ValueDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    using CodeTexts = std::initializer_list<std::pair<int, const char*>>;

    // The text of an integer code from a table of untranslated texts, passed
    // through tr in `context`; a value that is no integer or not in the table
    // gives "N/A".
    static QString codeText(const QVariant& value, const char* context, CodeTexts texts);
    static QString notAvailable();

protected:
    virtual QString text(const QVariant& value, const QLocale& locale) const = 0;
    virtual QIcon icon(const QVariant& value) const;
    virtual QColor textColor(const QVariant& value) const;

    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override;
};

} // namespace NVB::GUI
