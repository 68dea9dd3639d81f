#pragma once

#include <QStringList>

#include "accounts/storagesadd.h"
#include "amazons3compatible.h"
#include "cloud/info/amazons3like.h"

class QComboBox;
class QFormLayout;
class QLineEdit;
class QToolButton;

namespace NVB::GUI::Settings::Account {

// The dialog every provider of the S3 family shares. Opening the bucket list
// is the test of the account; OK needs a listing that succeeded since the
// credentials last changed, and a bucket.
class AmazonS3Compatible::Add : public Storages::Add
{
    Q_OBJECT

public:
    // endpointRow: the "Endpoint:" row is shown; signature: the account has a
    // choice of signature version at all.
    Add(NVL::Cloud::Type type, bool endpointRow, bool signature, QWidget* parent = nullptr);

    bool canRequestPrefixes() const override;
    QMap<QString, QVariant> cloudConfig() const override;
    bool loadContainersFinished(NVL::Cloud::Operation::ListContainers* operation) override;
    void lockWidgetsAfterError(bool locked) override;
    void lockWidgetsAfterSslOperation(bool locked) override;

    QLineEdit* displayNameEdit() const { return m_displayName; }
    QLineEdit* accessKeyEdit() const { return m_accessKey; }
    QLineEdit* secretKeyEdit() const { return m_secretKey; }
    QLineEdit* endpointEdit() const { return m_endpoint; }
    QComboBox* bucketCombo() const { return m_bucket; }
    QToolButton* addBucketButton() const { return m_addBucket; }
    bool useSsl() const { return m_useSsl; }
    NVL::Cloud::Info::AmazonS3Like::Signature signature() const { return m_signature; }
    bool containersLoaded() const { return m_containersLoaded; }
    QStringList containers() const { return m_containers; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    // The new bucket dialog; the base one has no region row.
    virtual Storages::AddContainer* addContainerDialog();
    virtual void saveConfig();
    // The record every member writes; a subclass adds or drops keys.
    virtual QJsonObject record() const;
    // Sets the endpoint edit from a preset of the cloud library.
    void setEndpointPreset();
    QFormLayout* form() const { return m_form; }
    bool hasSignature() const { return m_hasSignature; }

protected slots:
    void onAccept() override;
    void onSetItem(const QModelIndex& index) override;
    void onAdvancedClicked() override;

private slots:
    void onDataChanged();
    void onCredsReset();
    void onEditingFinished();
    void onAddContainerClicked();

private:
    QFormLayout* m_form;
    QLineEdit* m_displayName;
    QLineEdit* m_accessKey;
    QLineEdit* m_secretKey;
    QLineEdit* m_endpoint;
    QComboBox* m_bucket;
    QToolButton* m_addBucket;
    QString m_savedContainer;
    QStringList m_containers;
    bool m_useSsl = true;
    bool m_containersLoaded = false;
    NVL::Cloud::Info::AmazonS3Like::Signature m_signature = NVL::Cloud::Info::AmazonS3Like::V2;
    bool m_hasSignature;
};

} // namespace NVB::GUI::Settings::Account
