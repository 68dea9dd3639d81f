#pragma once

#include <QMap>

#include "accounts/storagesadd.h"
#include "backblazeb2.h"

class QComboBox;
class QLineEdit;
class QToolButton;

namespace NVB::GUI::Settings::Account {

// The Backblaze B2 dialog: key ID and application key; opening the bucket
// list is the test of the account.
class BackblazeB2::Add : public Storages::Add
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
    QLineEdit* keyIdEdit() const { return m_keyId; }
    QLineEdit* keyEdit() const { return m_key; }
    QComboBox* bucketCombo() const { return m_bucket; }
    QToolButton* addBucketButton() const { return m_addBucket; }
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
    void onAddBucketClicked();

private:
    void saveConfig();

    QLineEdit* m_displayName;
    QLineEdit* m_keyId;
    QLineEdit* m_key;
    QComboBox* m_bucket;
    QToolButton* m_addBucket;
    // Bucket name -> bucket id, from the last listing.
    QMap<QString, QString> m_ids;
    QString m_savedContainer;
    bool m_containersLoaded = false;
};

} // namespace NVB::GUI::Settings::Account
