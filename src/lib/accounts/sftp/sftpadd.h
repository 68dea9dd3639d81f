#pragma once

#include <functional>

#include <QFutureWatcher>

#include "accounts/storagesadd.h"
#include "cloud/sshprivatekey.h"
#include "sftp.h"

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QSpinBox;
class QWidget;

namespace NVB::GUI::Settings::Account {

// The dialog of an SFTP account. OK needs the fields filled in; the backup
// prefixes are offered once a test listing of the path has succeeded, and any
// change of what the login depends on asks for a new test. A key file is read
// on a worker thread, when chosen, tested or saved, never while typing.
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

    // The key text in a file; empty for an empty or unreadable path, a file
    // that is not a regular one or one too large to be a key. May block on a
    // slow file system: call it off the GUI thread.
    static QString privateKey(const QString& path);

    QLineEdit* displayNameEdit() const { return m_displayName; }
    QLineEdit* serverEdit() const { return m_server; }
    QLineEdit* pathEdit() const { return m_path; }
    QSpinBox* portBox() const { return m_port; }
    QLineEdit* userEdit() const { return m_user; }
    QComboBox* authCombo() const { return m_auth; }
    QLineEdit* passwordEdit() const { return m_password; }
    QLineEdit* keyPathEdit() const { return m_keyPath; }
    QLineEdit* passphraseEdit() const { return m_passphrase; }
    // A key file is being read.
    bool isLoadingKey() const { return m_keyWatcher->isRunning(); }
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
    void onKeyLoaded();

private:
    void saveConfig();
    // The credential of the chosen kind: the password, or the key text as
    // last read (or as stored).
    QString credential() const;
    // Whether the chosen credential is given, without touching any file.
    bool hasCredential() const;
    // Reads the chosen key file on a worker thread, then runs next; with a
    // password, or a key already read from that path, next runs at once.
    void withKey(const std::function<void()>& next);
    void startTest();
    void offerHostKey(const QMap<QString, QVariant>& refused);
    void showPassphrase(bool shown);

    QLineEdit* m_displayName;
    QLineEdit* m_server;
    QLineEdit* m_path;
    QSpinBox* m_port;
    QLineEdit* m_user;
    QComboBox* m_auth;
    QLineEdit* m_password;
    QWidget* m_keyRow;
    QLineEdit* m_passphrase;
    QLineEdit* m_keyPath;
    QPushButton* m_import;
    QCheckBox* m_keepAlive;
    QCheckBox* m_useProxy;
    QPushButton* m_test;
    // A key deciphered from the stored account, used until another is chosen.
    QString m_storedKey;
    // The key read from m_keyFrom, and whether it needs the passphrase.
    QString m_keyText;
    QString m_keyFrom;
    QString m_keyLoading;
    bool m_keyEncrypted = false;
    QFutureWatcher<NVL::Cloud::SshPrivateKey::Loaded>* m_keyWatcher;
    std::function<void()> m_afterKey;
    bool m_tested = false;
};

} // namespace NVB::GUI::Settings::Account
