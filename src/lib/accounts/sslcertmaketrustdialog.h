#pragma once

#include <QDialog>
#include <QSslCertificate>

class QPushButton;

namespace NVB::GUI::Settings::Account {

// Shows a server certificate that nothing vouches for and asks whether to
// trust it. The result is Trust (1) or Rejected.
class SslCertMakeTrustDialog : public QDialog
{
    Q_OBJECT

public:
    enum Result { Trust = 1 };

    SslCertMakeTrustDialog(const QSslCertificate& certificate, const QString& endpoint, QWidget* parent = nullptr);

    QPushButton* trustButton() const { return m_trust; }

private:
    QPushButton* m_trust;
};

} // namespace NVB::GUI::Settings::Account
