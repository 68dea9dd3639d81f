#include "amazons3compatiblevalidator.h"

namespace NVB::GUI::Settings::Account {

AmazonS3Compatible::Validator::Validator(QObject* parent)
    : QValidator(parent)
{ }

QValidator::State AmazonS3Compatible::Validator::validate(QString& input, int& pos) const
{
    if (input.isEmpty())
        return Acceptable;
    if (!input.at(0).isLetterOrNumber())
        return Invalid;
    if (pos <= 1)
        return Intermediate;
    if (input.size() > 2 && input.at(pos - 1) == QLatin1Char('.') && input.at(pos - 2) == QLatin1Char('.'))
        return Invalid;
    const QChar last = input.at(pos - 1);
    if (last.isLetterOrNumber() || last == QLatin1Char('-') || last == QLatin1Char('_') || last == QLatin1Char('.'))
        return Acceptable;
    return Invalid;
}

} // namespace NVB::GUI::Settings::Account
