#pragma once

#include "valuedelegate.h"

namespace NVB::GUI {

class PlanQuickPlanStatus : public ValueDelegate
{
    Q_OBJECT

public:
    using ValueDelegate::ValueDelegate;

    static QString toText(const QVariant& value, const QLocale& locale = QLocale());
    static QIcon toIcon(const QVariant& value);

protected:
    QString text(const QVariant& value, const QLocale& locale) const override;
    QIcon icon(const QVariant& value) const override;
};

} // namespace NVB::GUI
