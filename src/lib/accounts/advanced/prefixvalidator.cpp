#include "prefixvalidator.h"

namespace NVB::GUI {

PrefixValidator::PrefixValidator(QObject* parent)
    : QRegularExpressionValidator(QRegularExpression(QStringLiteral("[^/\\:\\*\\?><\\|]*")), parent)
{ }

QValidator::State PrefixValidator::validate(QString& input, int& pos) const
{
    const State state = QRegularExpressionValidator::validate(input, pos);
    if (state == Invalid)
        emit error();
    return state;
}

} // namespace NVB::GUI
