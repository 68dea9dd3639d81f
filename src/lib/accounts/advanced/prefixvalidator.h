#pragma once

#include <QRegularExpressionValidator>

namespace NVB::GUI {

// Refuses the characters a backup prefix cannot carry (/ : * ? > < |) and
// says so through error(), so that the edit can repair the text in place.
class PrefixValidator : public QRegularExpressionValidator
{
    Q_OBJECT

public:
    explicit PrefixValidator(QObject* parent = nullptr);

    State validate(QString& input, int& pos) const override;

signals:
    void error();
};

} // namespace NVB::GUI
