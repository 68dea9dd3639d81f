#pragma once

#include <QMap>

#include "accounts/bucketadd.h"
#include "backblazeb2.h"

class QLineEdit;

namespace NVB::GUI::Settings::Account {

// The Backblaze B2 dialog: key ID and application key; opening the bucket
// list is the test of the account.
class BackblazeB2::Add : public BucketAdd
{
    Q_OBJECT

public:
    explicit Add(QWidget* parent = nullptr);

    QMap<QString, QVariant> cloudConfig() const override;
    bool loadContainersFinished(NVL::Cloud::Operation::ListContainers* operation) override;
    void operationErrorHandler(int code, const QString& message) override;

    QLineEdit* displayNameEdit() const { return m_displayName; }
    QLineEdit* keyIdEdit() const { return m_keyId; }
    QLineEdit* keyEdit() const { return m_key; }

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
    // Bucket name -> bucket id, from the last listing.
    QMap<QString, QString> m_ids;
};

} // namespace NVB::GUI::Settings::Account
