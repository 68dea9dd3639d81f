#pragma once

#include <QValidator>

#include "azure.h"

namespace NVB::GUI::Settings::Account {

// A container name as typed: the S3 bucket rule without the dot, which Azure
// does not take (the test for two dots in a row stays, as in the S3 rule).
class Azure::Validator : public QValidator
{
    Q_OBJECT

public:
    explicit Validator(QObject* parent = nullptr);

    State validate(QString& input, int& pos) const override;
};

} // namespace NVB::GUI::Settings::Account
