#include "openstacknamevalidator.h"

#include "accounts/s3/amazons3compatiblevalidator.h"

namespace NVB::GUI::Settings::Account {

OpenStack::NameValidator::NameValidator(QObject* parent)
    : QValidator(parent)
{ }

QValidator::State OpenStack::NameValidator::validate(QString& input, int& pos) const
{
    if (pos > 1 && pos <= input.size() && input.at(pos - 1) == QLatin1Char(' '))
        return Acceptable;
    return AmazonS3Compatible::Validator().validate(input, pos);
}

} // namespace NVB::GUI::Settings::Account
