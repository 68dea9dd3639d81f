#include "backblazeb2validator.h"

namespace NVB::GUI::Settings::Account {

BackblazeB2::Validator::Validator(QObject* parent)
    : QValidator(parent)
    , m_rule(QStringLiteral("^(?!b2-)[0-9A-Za-z-]*$"))
{ }

QValidator::State BackblazeB2::Validator::validate(QString& input, int&) const
{
    return m_rule.match(input).hasMatch() ? Acceptable : Invalid;
}

} // namespace NVB::GUI::Settings::Account
