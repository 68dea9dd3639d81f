#include "googlevalidator.h"

#include "accounts/s3/amazons3compatiblevalidator.h"

namespace NVB::GUI::Settings::Account {

Google::Validator::Validator(QObject* parent)
    : QValidator(parent)
{ }

QValidator::State Google::Validator::validate(QString& input, int& pos) const
{
    return AmazonS3Compatible::Validator().validate(input, pos);
}

} // namespace NVB::GUI::Settings::Account
