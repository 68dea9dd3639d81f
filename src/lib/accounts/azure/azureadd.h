#pragma once

#include <QStringList>

#include "accounts/storagesadd.h"
#include "azure.h"

class QComboBox;
class QFormLayout;
class QLabel;
class QLineEdit;
class QToolButton;

namespace NVB::GUI::Settings::Account {

// The Azure Blob dialog: account name, shared key and the cloud the account
// lives in; an endpoint only for Azure Stack. Opening the container list is
// the test of the account.
class Azure::Add : public Storages::Add
{
    Q_OBJECT

public:
    explicit Add(QWidget* parent = nullptr);

    bool canRequestPrefixes() const override;
    QMap<QString, QVariant> cloudConfig() const override;
    bool loadContainersFinished(NVL::Cloud::Operation::ListContainers* operation) override;
    void lockWidgetsAfterError(bool locked) override;
    void lockWidgetsAfterSslOperation(bool locked) override;
    void operationErrorHandler(int code, const QString& message) override;

    QLineEdit* displayNameEdit() const { return m_displayName; }
    QLineEdit* accountEdit() const { return m_account; }
    QLineEdit* keyEdit() const { return m_key; }
    QComboBox* accountTypeCombo() const { return m_accountType; }
    QLineEdit* endpointEdit() const { return m_endpoint; }
    QComboBox* containerCombo() const { return m_container; }
    QToolButton* addContainerButton() const { return m_addContainer; }
    bool containersLoaded() const { return m_containersLoaded; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

protected slots:
    void onAccept() override;
    void onSetItem(const QModelIndex& index) override;
    void onAdvancedClicked() override;

private slots:
    void onDataChanged();
    void onCredsReset();
    void onAccounTypeChanged();
    void onEndpointEditingFinished();
    void onAddBucketClicked();

private:
    void saveConfig();
    bool isStack() const;

    QLineEdit* m_displayName;
    QLineEdit* m_account;
    QLineEdit* m_key;
    QComboBox* m_accountType;
    QLabel* m_endpointLabel;
    QLineEdit* m_endpoint;
    QComboBox* m_container;
    QToolButton* m_addContainer;
    QStringList m_containers;
    QString m_savedContainer;
    bool m_containersLoaded = false;
    bool m_useSsl = true;
};

} // namespace NVB::GUI::Settings::Account
