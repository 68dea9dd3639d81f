#pragma once

#include <QColor>

#include "valuedelegate.h"

namespace NVB::GUI {

// The result of a plan's run, as text and colour.
class PlanResultDelegate : public ValueDelegate
{
    Q_OBJECT

public:
    using ValueDelegate::ValueDelegate;

    static QString toText(const QVariant& value, const QLocale& locale = QLocale());
    // An invalid colour for an invalid value.
    static QColor color(const QVariant& value);

protected:
    QString text(const QVariant& value, const QLocale& locale) const override;
    QColor textColor(const QVariant& value) const override;
};

} // namespace NVB::GUI
