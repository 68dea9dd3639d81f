#pragma once

#include <QStyledItemDelegate>

namespace NVB::Console {

// Shows a UTC date value of the plan tables in the user's local time.
class LocalTimeDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QString displayText(const QVariant& value, const QLocale& locale) const override;
};

} // namespace NVB::Console
