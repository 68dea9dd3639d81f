#pragma once

#include <QDialog>

class QCheckBox;
class QLabel;
class QLineEdit;
class QSpinBox;

namespace NVB::Console {

// The mail server the engine sends plan notifications through. Writes the
// settings store at once on OK; the engine reads it afresh for every mail.
// The password is kept enciphered and shown only as "unchanged" once set.
class MailServerDialog : public QDialog
{
    Q_OBJECT
public:
    explicit MailServerDialog(QWidget* parent = nullptr);

    QLineEdit* hostEdit() const { return m_host; }
    QSpinBox* portBox() const { return m_port; }
    QCheckBox* tlsBox() const { return m_tls; }
    QLineEdit* userEdit() const { return m_user; }
    QLineEdit* passwordEdit() const { return m_password; }
    QLineEdit* senderEdit() const { return m_sender; }

public slots:
    void accept() override;

private:
    QLineEdit* m_host;
    QSpinBox* m_port;
    QCheckBox* m_tls;
    QLineEdit* m_user;
    QLineEdit* m_password;
    QLineEdit* m_sender;
    QLabel* m_error;
};

} // namespace NVB::Console
