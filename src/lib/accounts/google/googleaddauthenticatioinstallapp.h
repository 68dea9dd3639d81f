#pragma once

#include <QDialog>

#include "googleadd.h"

class QDialogButtonBox;
class QLabel;
class QLineEdit;
class QPushButton;

namespace NVB::GUI::Settings::Account {

class OAuthLoopback;

// An installed application's sign-in: "..." opens the provider's page in
// the system browser, and the code comes back to a listener on this
// computer by itself; a code shown by the provider may be pasted as well.
class Google::Add::AuthenticatioInstallApp : public QDialog
{
    Q_OBJECT

public:
    AuthenticatioInstallApp(QString* projectId, QString* code, QWidget* parent = nullptr);

    // What the token endpoint wants back with the code: the PKCE verifier
    // and the redirect the code was issued for. For a code typed by hand
    // they are empty and the out-of-band redirect.
    QString codeVerifier() const;
    QString redirectUri() const;

    QLineEdit* projectIdEdit() const { return m_projectIdEdit; }
    QLineEdit* codeEdit() const { return m_codeEdit; }
    QPushButton* getTokenButton() const { return m_getToken; }
    QLabel* messageLabel() const { return m_message; }
    QDialogButtonBox* buttonBox() const { return m_buttons; }

private slots:
    void onGetToken();
    void onCodeReceived(const QString& code);
    void onDataChanged();
    void onAccept();

private:
    QString* m_projectId;
    QString* m_code;
    OAuthLoopback* m_loopback = nullptr;
    QString m_receivedCode;
    QLineEdit* m_projectIdEdit;
    QPushButton* m_getToken;
    QLineEdit* m_codeEdit;
    QLabel* m_message;
    QDialogButtonBox* m_buttons;
};

} // namespace NVB::GUI::Settings::Account
