#pragma once

#include <QString>

#include "storagesadd.h"

class QComboBox;
class QHBoxLayout;
class QToolButton;

namespace NVB::GUI::Settings::Account {

// An account dialog whose destination is a bucket picked from the server's
// own list, with a button beside it to create one. Opening the list is the
// test of the account: it loads on the first click, adding a bucket and
// prefixes wait for it, and new credentials make it load again.
class BucketAdd : public Storages::Add
{
    Q_OBJECT

public:
    bool canRequestPrefixes() const override;
    void lockWidgetsAfterError(bool locked) override;
    void lockWidgetsAfterSslOperation(bool locked) override;

    QComboBox* bucketCombo() const { return m_bucket; }
    QToolButton* addBucketButton() const { return m_addBucket; }
    bool containersLoaded() const { return m_containersLoaded; }

protected:
    BucketAdd(NVL::Cloud::Type type, QWidget* parent);

    bool eventFilter(QObject* watched, QEvent* event) override;
    // False while the dialog is still getting what the listing needs.
    virtual bool mayLoadContainers() const;

    // The list and its button, for the provider's form.
    QHBoxLayout* bucketRow();
    // Fills the list from a listing; answers the names.
    QStringList fillBuckets(const QJsonArray& data);
    // After a change of the form: filled says whether the account's own
    // fields are complete.
    void updateBuckets(bool filled);
    // Other credentials: the list is to be loaded again.
    void resetBuckets();
    void setSavedContainer(const QString& name) { m_savedContainer = name; }

private:
    QComboBox* m_bucket;
    QToolButton* m_addBucket;
    QString m_savedContainer;
    bool m_containersLoaded = false;
};

} // namespace NVB::GUI::Settings::Account
