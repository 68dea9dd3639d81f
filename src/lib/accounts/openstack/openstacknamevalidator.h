#pragma once

#include <QValidator>

#include "openstack.h"

namespace NVB::GUI::Settings::Account {

// A container name as typed: the S3 bucket rule (only the character before
// the cursor is judged) with the space allowed, which Swift takes.
class OpenStack::NameValidator : public QValidator
{
    Q_OBJECT

public:
    explicit NameValidator(QObject* parent = nullptr);

    State validate(QString& input, int& pos) const override;
};

} // namespace NVB::GUI::Settings::Account
