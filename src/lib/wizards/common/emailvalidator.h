#pragma once

#include <QValidator>

namespace NVB::GUI {

// One e-mail address: a local part, "@", and a domain of at least two
// labels. Anything on the way to one is Intermediate, so typing is never
// blocked; only a whole address is Acceptable.
class EmailValidator : public QValidator
{
    Q_OBJECT
public:
    explicit EmailValidator(QObject* parent = nullptr);

    State validate(QString& input, int& pos) const override;

    // The text split at semicolons and commas, trimmed, empty parts dropped.
    static QStringList addresses(const QString& text);
    // True when there is at least one address and every one is acceptable.
    static bool isAcceptableList(const QString& text);
};

} // namespace NVB::GUI
