#pragma once

#include <QDialog>
#include <QJsonObject>
#include <QMap>
#include <QPersistentModelIndex>
#include <QSharedPointer>
#include <QStringList>
#include <QVariant>

#include "cloud/cloudtype.h"
#include "storagesaddbase.h"

class QDialogButtonBox;
class QLabel;
class QLayout;
class QLineEdit;
class QPushButton;
class QVBoxLayout;

namespace NVL::Cloud {
class IOperation;
namespace Operation {
class ListContainers;
}
} // namespace NVL::Cloud

namespace NVB::Operation {
class GetPrefixOperation;
}

namespace NVB::GUI {
class ProgressWheel;
}

namespace NVB::GUI::Settings::Account {
class CertificateTrust;
}

namespace NVB::GUI::Settings {

// The frame of every provider's account dialog: header, the provider's form,
// "Advanced settings", the message line and OK/Cancel. It runs the cloud
// operation that tests an account, the trust question for an unknown server
// certificate, and the save command; the account itself is written only by
// the engine.
class Storages::Add : public QDialog, public Storages::AddBase
{
    Q_OBJECT

public:
    static constexpr int LineEditWidth = 260;

    Add(NVL::Cloud::Type type, QWidget* parent = nullptr);
    ~Add() override;

    NVL::Cloud::Type type() const { return m_type; }
    QString prefix() const { return m_prefix; }
    void setPrefix(const QString& prefix) { m_prefix = prefix; }
    // The stored account the dialog was opened on; invalid for a new one.
    QModelIndex item() const { return m_index; }
    // Fills the dialog from a row of the storage connection model, shortly
    // after it is on screen.
    void setItem(const QModelIndex& index);

    QPushButton* okButton() const;
    QPushButton* cancelButton() const;
    QPushButton* advancedButton() const { return m_advanced; }
    QLabel* messageLabel() const { return m_message; }
    // The operation that runs, null when none does.
    QSharedPointer<NVL::Cloud::IOperation> operation() const { return m_operation; }

    void loadContainers();

    virtual bool canRequestPrefixes() const;
    virtual void loadPrefixes();
    virtual void beginLockUI();
    virtual void endLockUI();
    virtual void lockWidgetsAfterError(bool locked);
    virtual void lockWidgetsAfterSslOperation(bool locked);
    virtual bool loadContainersFinished(NVL::Cloud::Operation::ListContainers* operation);
    virtual QMap<QString, QVariant> cloudConfig() const;
    virtual void createContainer(const QJsonObject& params);
    virtual void operationErrorHandler(int code, const QString& message);

    void setErrorMessage(const QString& text, bool show = true);
    void setSuccessMessage(const QString& text, bool show = true);
    void process(bool on);

signals:
    void updateComplite();
    void updateError(QString text);
    void setItemSignal(QModelIndex index);
    void loadPrefixiesFinished(QStringList prefixes);

protected slots:
    virtual void onAccept() = 0;
    virtual void onSetItem(const QModelIndex& index) = 0;
    virtual void onAdvancedClicked() = 0;
    virtual void onLoadContainerOperationFinished();

    void onUpdateComplite();
    void onUpdateError(const QString& text);
    void onCreateContainerFinished();
    void onLoadPrefixesOperationFinished(const QUuid& id, const QStringList& prefixes);
    void onLoadPrefixesOperationError(const QUuid& id, int code, const QString& message);
    void onReject();
    void onClearErrorMessage();
    void callingOnSetItem();

protected:
    // Puts the provider's form at the place the frame keeps for it.
    void setProviderLayout(QLayout* layout);
    // Turns a finished operation into behaviour; true when it had no error.
    bool operationFinished(NVL::Cloud::IOperation* operation);
    // Sends the record to the engine; false with the reason in error when the
    // command could not even be sent.
    bool updateAccount(const QJsonObject& record, const QString& displayName, QString& error);
    // The endpoint as the operations want it, or empty with the reason shown.
    QString checkingEndpoint(const QString& text, bool& useSsl);
    void setOperation(const QSharedPointer<NVL::Cloud::IOperation>& operation) { m_operation = operation; }
    // Drops the running operation, if any: remove() exactly once.
    void dropOperation();
    // The opening of every onSetItem(): the stored record, the account's id
    // and its name put into displayName. False for an invalid index, which
    // unlocks the form.
    bool readItem(const QModelIndex& index, QLineEdit* displayName, QJsonObject* record, QString* id);
    // Sends the record and shows why it could not even be sent.
    void saveRecord(const QJsonObject& record, const QString& displayName);

    // The name of a container created here, to select once the list is in.
    QString m_newContainer;

private:
    NVL::Cloud::Type m_type;
    QString m_prefix;
    QPersistentModelIndex m_index;
    QSharedPointer<NVL::Cloud::IOperation> m_operation;
    QSharedPointer<NVB::Operation::GetPrefixOperation> m_prefixOperation;
    Account::CertificateTrust* m_trust = nullptr;
    QVBoxLayout* m_providerPlace = nullptr;
    QPushButton* m_advanced = nullptr;
    QLabel* m_message = nullptr;
    ProgressWheel* m_wheel = nullptr;
    QDialogButtonBox* m_buttons = nullptr;
};

} // namespace NVB::GUI::Settings
