#include "wizards/common/emailvalidator.h"

#include <QRegularExpression>

namespace NVB::GUI {

EmailValidator::EmailValidator(QObject* parent)
    : QValidator(parent)
{ }

QValidator::State EmailValidator::validate(QString& input, int& pos) const
{
    Q_UNUSED(pos)
    static const QRegularExpression address(QStringLiteral(
        R"(^[A-Za-z0-9.!#$%&'*+/=?^_`{|}~-]+@[A-Za-z0-9](?:[A-Za-z0-9-]*[A-Za-z0-9])?(?:\.[A-Za-z0-9](?:[A-Za-z0-9-]*[A-Za-z0-9])?)+$)"));
    if (address.match(input).hasMatch() && !input.contains(QLatin1String("..")) && !input.startsWith(QLatin1Char('.'))
        && !input.contains(QLatin1String(".@")))
        return Acceptable;
    return Intermediate;
}

QStringList EmailValidator::addresses(const QString& text)
{
    QStringList result;
    for (const QString& part : text.split(QRegularExpression(QStringLiteral("[;,]")))) {
        const QString trimmed = part.trimmed();
        if (!trimmed.isEmpty())
            result << trimmed;
    }
    return result;
}

bool EmailValidator::isAcceptableList(const QString& text)
{
    const QStringList list = addresses(text);
    if (list.isEmpty())
        return false;
    EmailValidator validator;
    for (QString address : list) {
        int pos = 0;
        if (validator.validate(address, pos) != Acceptable)
            return false;
    }
    return true;
}

} // namespace NVB::GUI
