#pragma once

#include <QDomDocument>

#include "amazonlifecyclepolicyedit.h"
#include "cloudfilesmodel.h"

namespace NVB::GUI {

// A bucket's folders with the lifecycle rule of each: a folder's text names
// its transitions, a checked folder takes the policy given under
// Qt::UserRole, and save() writes the rules of the checked folders back (or
// deletes the configuration when none is left).
class AmazonLifecyclePolicyModel : public CloudFilesModel
{
    Q_OBJECT

public:
    explicit AmazonLifecyclePolicyModel(QObject* parent = nullptr);
    ~AmazonLifecyclePolicyModel() override;

    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role = Qt::EditRole) override;

    // Lists the configuration's bucket and loads its rules.
    void setCloudConfigAndLoad(const QMap<QString, QVariant>& config);
    void save();
    const NVB::Cloud::AmazonLifecyclePolicyEdit& edit() const { return m_edit; }
    bool isBusy() const { return m_operation; }

public slots:
    void onSetStorage(const QUuid& id) override;
    void onResult(const QString& rootPath, const QList<QObject*>& objects) override;

signals:
    void beginLoad();
    void endLoad();
    void onSubmit();
    void onError(QString text);

private slots:
    void onLifecyclePolicyOperationFinished();
    void onLifecyclePolicy(const QDomDocument& document);

private:
    void startLoad();
    void onLoadError(const QString& text);
    void onSaveFinished();
    // The node's prefix's policy as its user data.
    void applyPolicy(QObject* node);

    NVB::Cloud::AmazonLifecyclePolicyEdit m_edit;
    QSharedPointer<NVL::Cloud::IOperation> m_operation;
};

} // namespace NVB::GUI
