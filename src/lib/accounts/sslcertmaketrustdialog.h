#pragma once

#include <QDialog>
#include <QSslCertificate>

class QPushButton;

namespace NVB::GUI::Settings::Account {

// Shows a server certificate that nothing vouches for, and why verification
// failed, and asks whether to trust it for this endpoint only. Everything
// shown comes from the network, so it is plain text. The result is Trust (1)
// or Rejected.
class SslCertMakeTrustDialog : public QDialog
{
    Q_OBJECT

public:
    enum Result { Trust = 1 };

    SslCertMakeTrustDialog(const QSslCertificate& certificate, const QString& endpoint,
        const QStringList& reasons = QStringList(), QWidget* parent = nullptr);

    QPushButton* trustButton() const { return m_trust; }
    // What the dialog shows, as one text.
    QString text() const { return m_text; }

private:
    QPushButton* m_trust;
    QString m_text;
};

} // namespace NVB::GUI::Settings::Account
