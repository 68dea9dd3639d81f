#pragma once

#include <QByteArray>
#include <QStringList>

#include "accounts/bucketadd.h"
#include "cloud/canceltoken.h"
#include "google.h"

class QComboBox;
class QLineEdit;
class QToolButton;

namespace NVB::GUI::Settings::Account {

// The Google Cloud Storage dialog. The account signs in one of three ways,
// each edited in a small dialog of its own; this dialog keeps only what they
// give. Opening the bucket list is the test of the account.
class Google::Add : public BucketAdd
{
    Q_OBJECT

public:
    class AuthenticationAccessKey;
    class AuthenticationAccount;
    class AuthenticatioInstallApp;

    // Indexes of the "Authentication:" combo.
    enum Method { AccessKey = 0, InstalledApp = 1, ServiceAccount = 2 };

    explicit Add(QWidget* parent = nullptr);
    ~Add() override;

    // Trades the installed application's code for its refresh token on a
    // worker, then loads the buckets with that token; the code is spent.
    void refreshTokenInstalledApp(const QByteArray& code);

    QMap<QString, QVariant> cloudConfig() const override;
    bool loadContainersFinished(NVL::Cloud::Operation::ListContainers* operation) override;

    QLineEdit* displayNameEdit() const { return m_displayName; }
    QComboBox* authenticationCombo() const { return m_authentication; }
    QToolButton* settingsButton() const { return m_settings; }
    QString refreshToken() const { return m_refreshToken; }

protected:
    bool mayLoadContainers() const override;

protected slots:
    void onAccept() override;
    void onSetItem(const QModelIndex& index) override;
    void onAdvancedClicked() override;

private slots:
    void onAuthenticationTypeChanged(int index);
    void onAuthenticationSettingsClicked();
    void onDataChanged();
    void onCredsReset();
    void onAddBucketClicked();

private:
    // Runs the sub-dialog of a method; true when it was accepted.
    bool editCredentials(int method);
    bool credentialsComplete() const;
    void saveConfig();

    QLineEdit* m_displayName;
    QComboBox* m_authentication;
    QToolButton* m_settings;

    QString m_accessKey;
    QString m_secretKey;
    QString m_projectId;
    QString m_serviceAccount;
    QByteArray m_privateKey;
    QString m_appProjectId;
    QString m_code;
    QString m_codeVerifier;
    QString m_redirectUri;
    QString m_refreshToken;
    NVL::Cloud::CancelToken m_exchange;
    bool m_trading = false;
    bool m_useSsl = true;

    QStringList m_containers;
};

} // namespace NVB::GUI::Settings::Account
