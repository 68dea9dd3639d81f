#pragma once

#include <QDialog>

class QCheckBox;
class QDialogButtonBox;
class QGroupBox;
class QLineEdit;
class QRadioButton;

namespace NVB::GUI::Settings {

// The web proxy's address and login. The stored password is never shown: a
// mask stands for it, and only a typed text replaces it.
class ProxyDialog : public QDialog
{
    Q_OBJECT
public:
    static const QString PasswordMask;

    // With `withChoice` the user may also turn the proxy off here.
    explicit ProxyDialog(bool withChoice = true, QWidget* parent = nullptr);

    QRadioButton* noProxyButton() const { return m_noProxy; }
    QRadioButton* manualButton() const { return m_manual; }
    QLineEdit* hostEdit() const { return m_host; }
    QLineEdit* portEdit() const { return m_port; }
    QGroupBox* authenticationBox() const { return m_authentication; }
    QLineEdit* userEdit() const { return m_user; }
    QLineEdit* passwordEdit() const { return m_password; }
    QDialogButtonBox* buttonBox() const { return m_buttons; }

public slots:
    void onAccept();
    void onDataChanged();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private slots:
    void authanticationFormEnable(bool enabled);
    void onNoProxyRadioButtonClicked();
    void onManualProxyRadioButtonClicked();

private:
    void updateProxySettings();
    void saveProxySettings();
    void updateEnabledState();

    QRadioButton* m_noProxy = nullptr;
    QRadioButton* m_manual = nullptr;
    QLineEdit* m_host;
    QLineEdit* m_port;
    QGroupBox* m_authentication;
    QLineEdit* m_user;
    QLineEdit* m_password;
    QDialogButtonBox* m_buttons;
};

} // namespace NVB::GUI::Settings
