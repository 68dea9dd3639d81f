#pragma once

#include "accounts/storagesadd.h"
#include "sftp.h"

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QSpinBox;
class QWidget;

namespace NVB::GUI::Settings::Account {

// The dialog of an SFTP account. An account is usable once a test listing of
// its path has succeeded; any change of what the login depends on asks for a
// new test.
class Sftp::Add : public Storages::Add
{
    Q_OBJECT

public:
    enum AuthType { Password = 0, PrivateKey = 1 };

    explicit Add(QWidget* parent = nullptr);

    QMap<QString, QVariant> cloudConfig() const override;
    // The backup folders lie at the top of the path, so the prefixes can be
    // listed once the path has been tested.
    bool canRequestPrefixes() const override;
    void lockWidgetsAfterError(bool locked) override;

    // The key text in a file; empty for an empty or unreadable path.
    static QString privateKey(const QString& path);

    QLineEdit* displayNameEdit() const { return m_displayName; }
    QLineEdit* serverEdit() const { return m_server; }
    QLineEdit* pathEdit() const { return m_path; }
    QSpinBox* portBox() const { return m_port; }
    QLineEdit* userEdit() const { return m_user; }
    QComboBox* authCombo() const { return m_auth; }
    QLineEdit* passwordEdit() const { return m_password; }
    QLineEdit* keyPathEdit() const { return m_keyPath; }
    QCheckBox* keepAliveBox() const { return m_keepAlive; }
    QCheckBox* useProxyBox() const { return m_useProxy; }
    QPushButton* testButton() const { return m_test; }
    bool isTested() const { return m_tested; }

public slots:
    void testSessionUnavailable();

protected slots:
    void onAccept() override;
    void onSetItem(const QModelIndex& index) override;
    void onAdvancedClicked() override;

private slots:
    void onAuthTypeChanged(int index);
    void onSelectPathToPKeyCliked();
    void onDataChanged();
    void onCredsReset();
    void onTestFinished();

private:
    void saveConfig();
    // The credential of the chosen kind: the password, or the key text.
    QString credential() const;

    QLineEdit* m_displayName;
    QLineEdit* m_server;
    QLineEdit* m_path;
    QSpinBox* m_port;
    QLineEdit* m_user;
    QComboBox* m_auth;
    QLabel* m_passwordLabel;
    QLineEdit* m_password;
    QLabel* m_keyLabel;
    QWidget* m_keyRow;
    QLineEdit* m_keyPath;
    QPushButton* m_import;
    QCheckBox* m_keepAlive;
    QCheckBox* m_useProxy;
    QPushButton* m_test;
    // A key deciphered from the stored account, used until another is chosen.
    QString m_storedKey;
    bool m_tested = false;
};

} // namespace NVB::GUI::Settings::Account
