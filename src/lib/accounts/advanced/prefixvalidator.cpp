#include "prefixvalidator.h"

namespace NVB::GUI {

PrefixValidator::PrefixValidator(QObject* parent)
    : QRegularExpressionValidator(QRegularExpression(QStringLiteral("[^/\\:\\*\\?><\\|]*")), parent)
{ }

QValidator::State PrefixValidator::validate(QString& input, int& pos) const
{
    const State state = QRegularExpressionValidator::validate(input, pos);
    // validate() is const by its base's contract; telling listeners is not a
    // change of the validator.
    if (state == Invalid)
        emit const_cast<PrefixValidator*>(this)->error();
    return state;
}

} // namespace NVB::GUI
