#pragma once

#include <QByteArray>
#include <QStringList>

#include "accounts/storagesadd.h"
#include "google.h"

class QComboBox;
class QLineEdit;
class QToolButton;

namespace NVB::GUI::Settings::Account {

// The Google Cloud Storage dialog. The account signs in one of three ways,
// each edited in a small dialog of its own; this dialog keeps only what they
// give. Opening the bucket list is the test of the account.
class Google::Add : public Storages::Add
{
    Q_OBJECT

public:
    class AuthenticationAccessKey;
    class AuthenticationAccount;
    class AuthenticatioInstallApp;

    // Indexes of the "Authentication:" combo.
    enum Method { AccessKey = 0, InstalledApp = 1, ServiceAccount = 2 };

    explicit Add(QWidget* parent = nullptr);

    bool canRequestPrefixes() const override;
    QMap<QString, QVariant> cloudConfig() const override;
    bool loadContainersFinished(NVL::Cloud::Operation::ListContainers* operation) override;
    void lockWidgetsAfterError(bool locked) override;
    void lockWidgetsAfterSslOperation(bool locked) override;

    QLineEdit* displayNameEdit() const { return m_displayName; }
    QComboBox* authenticationCombo() const { return m_authentication; }
    QToolButton* settingsButton() const { return m_settings; }
    QComboBox* bucketCombo() const { return m_bucket; }
    QToolButton* addBucketButton() const { return m_addBucket; }
    bool containersLoaded() const { return m_containersLoaded; }
    QString refreshToken() const { return m_refreshToken; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

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
    QComboBox* m_bucket;
    QToolButton* m_addBucket;

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
    bool m_useSsl = true;

    QStringList m_containers;
    QString m_savedContainer;
    bool m_containersLoaded = false;
};

} // namespace NVB::GUI::Settings::Account
