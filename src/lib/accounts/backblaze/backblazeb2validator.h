#pragma once

#include <QRegularExpression>
#include <QValidator>

#include "backblazeb2.h"

namespace NVB::GUI::Settings::Account {

// A bucket name as typed: letters, digits and hyphens, never starting with
// "b2-". Unlike the other providers' rules it judges the whole input.
class BackblazeB2::Validator : public QValidator
{
    Q_OBJECT

public:
    explicit Validator(QObject* parent = nullptr);

    State validate(QString& input, int& pos) const override;

private:
    QRegularExpression m_rule;
};

} // namespace NVB::GUI::Settings::Account
