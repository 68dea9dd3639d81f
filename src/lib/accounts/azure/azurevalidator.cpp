#include "azurevalidator.h"

namespace NVB::GUI::Settings::Account {

Azure::Validator::Validator(QObject* parent)
    : QValidator(parent)
{ }

QValidator::State Azure::Validator::validate(QString& input, int& pos) const
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
    return last.isLetterOrNumber() || last == QLatin1Char('-') || last == QLatin1Char('_') ? Acceptable : Invalid;
}

} // namespace NVB::GUI::Settings::Account
