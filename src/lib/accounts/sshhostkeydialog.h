#pragma once

#include <QDialog>

class QPushButton;

namespace NVB::GUI::Settings::Account {

// Asks whether to trust an SSH server's host key that no known_hosts file
// knows, showing the fingerprint as ssh prints it so that the user can
// compare it with what the server's administrator gives. Accepted means the
// key may be recorded for that host:port.
class SshHostKeyDialog : public QDialog
{
    Q_OBJECT

public:
    SshHostKeyDialog(
        const QString& server, const QString& keyType, const QString& fingerprint, QWidget* parent = nullptr);

    QPushButton* acceptButton() const { return m_accept; }
    QString text() const;

private:
    QString m_text;
    QPushButton* m_accept;
};

} // namespace NVB::GUI::Settings::Account
