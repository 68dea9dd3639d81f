#pragma once

#include "valuedelegate.h"

namespace NVB::GUI {

class SizeDelegate : public ValueDelegate
{
    Q_OBJECT

public:
    using ValueDelegate::ValueDelegate;

    // "N/A" for a negative size and for the two values the engine uses to mean
    // "unknown": the largest qint64 and the largest quint64.
    static QString toText(const QVariant& value, const QLocale& locale = QLocale());
    // Only the two "unknown" values are refused, with `other` in place of
    // "N/A"; a negative size is formatted.
    static QString toText(const QVariant& value, const QString& other);

    static bool isUnknownSize(const QVariant& value);

protected:
    QString text(const QVariant& value, const QLocale& locale) const override;
};

} // namespace NVB::GUI
