#pragma once

#include <QDomDocument>

#include "amazons3.h"
#include "amazons3compatibleadd.h"

class QCheckBox;

namespace NVB::GUI::Settings::Account {

// The Amazon S3 dialog: the S3 body with Amazon's endpoint and regions, and
// "Archive to Glacier", which an account that has it may turn off (a new
// account cannot turn it on). Turning it off, or moving the prefix of an
// archiving account, rewrites the bucket's lifecycle rules before saving.
class AmazonS3::Add : public AmazonS3Compatible::Add
{
    Q_OBJECT

public:
    explicit Add(QWidget* parent = nullptr);

    QCheckBox* glacierBox() const { return m_glacier; }

public slots:
    // The rule of the dialog's prefix made to follow the box, for a document
    // already in hand, then saved or deleted and the account saved.
    void onLoadLifecyclePolicy(const QDomDocument& document);

protected:
    Storages::AddContainer* addContainerDialog() override;
    QJsonObject record() const override;

protected slots:
    void onAccept() override;
    void onSetItem(const QModelIndex& index) override;

private:
    void loadLifecyclePolicy();
    void onLifecyclePolicyEditError(const QString& text);
    void onSaveLifecyclePolicy();
    // Runs an operation to its end in a nested loop; false with the text
    // logged (after logLine) and shown when it failed.
    bool runOperation(const QSharedPointer<NVL::Cloud::IOperation>& operation, const QString& logLine);

    QCheckBox* m_glacier;
    bool m_openedGlacier = false;
    QString m_openedPrefix;
    QMap<QString, QVariant> m_checkedConfig;
};

} // namespace NVB::GUI::Settings::Account
