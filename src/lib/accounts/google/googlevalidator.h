#pragma once

#include <QValidator>

#include "google.h"

namespace NVB::GUI::Settings::Account {

// A bucket name as it is typed, by the same rule as an S3 bucket's: the first
// character a letter or digit, then letters, digits, "-", "_" and ".", never
// two dots in a row. Google's stricter rules are the server's to tell.
class Google::Validator : public QValidator
{
    Q_OBJECT

public:
    explicit Validator(QObject* parent = nullptr);

    State validate(QString& input, int& pos) const override;
};

} // namespace NVB::GUI::Settings::Account
