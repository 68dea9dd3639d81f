#pragma once

#include "valuedelegate.h"

namespace NVB::GUI {

class TrueFalseDelegate : public ValueDelegate
{
    Q_OBJECT

public:
    using ValueDelegate::ValueDelegate;

    static QString toText(const QVariant& value, const QLocale& locale = QLocale());

protected:
    QString text(const QVariant& value, const QLocale& locale) const override;
};

} // namespace NVB::GUI
