#pragma once

#include <QValidator>

#include "amazons3compatible.h"

namespace NVB::GUI::Settings::Account {

// A bucket name as it is typed. Only the character before the cursor is
// looked at, so that a name pasted into the middle is not judged here (the
// server has the last word), and there is no upper limit of length.
class AmazonS3Compatible::Validator : public QValidator
{
    Q_OBJECT

public:
    explicit Validator(QObject* parent = nullptr);

    State validate(QString& input, int& pos) const override;
};

} // namespace NVB::GUI::Settings::Account
