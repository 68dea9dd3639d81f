#pragma once

#include <QDateTime>
#include <QMap>
#include <QScopedPointer>

#include "records/plan/backupstorageinfo.h"
#include "wizards/backup/backupplaneditwizard.h"
#include "wizards/common/pagebase.h"

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QWidget;

namespace NVB::GUI {

class AttentionFrame;
class CheckBox;
class CurrentLanguageFrame;

// What happens to the data on its way to the storage: compression, encryption
// with password and hint, and the provider's own options (server side
// encryption, storage class or access tier, transfer acceleration). What shows
// depends on the provider, the rebranding switches, the edition and the
// plan's format.
class BackupPlanEditWizard::PageCompressionEndEncryption : public PlanWizardBase::PageBase
{
    Q_OBJECT
public:
    // Two of the field names read oddly; stored wizards and other pages use
    // them as they are.
    static constexpr char FieldUseCompression[] = "Field_UseEncryption";
    static constexpr char FieldUseEncryption[] = "Field_FieldUseEncryption";
    static constexpr char FieldEncryptionType[] = "Field_EncryptionType";
    static constexpr char FieldEncryptionPassword[] = "Field_EncryptionPassword";
    static constexpr char FieldEncryptionConfirmPassword[] = "Field_EncryptionConfirmPassword";
    static constexpr char FieldEncryptionHint[] = "Field_EncryptionHint";
    static constexpr char FieldUseSSE[] = "Field_UseSSE";
    static constexpr char FieldUseS3Acceleration[] = "Field_UseS3Acceleration";
    static constexpr char Field_StorageClass[] = "Field_StorageClass";

    using AmazonS3StorageClass = NVB::Info::Plan::BackupStorageInfo::AmazonS3StorageClass;
    using AzureBlobStorageClass = NVB::Info::Plan::BackupStorageInfo::AzureBlobStorageClass;

    static const QMap<int, QString>& EncryptionType();

    explicit PageCompressionEndEncryption(bool isArchive, QWidget* parent = nullptr);
    ~PageCompressionEndEncryption() override;

    void initializePage() override;
    bool isComplete() const override;
    bool validatePage() override;
    int nextId() const override;

    QString summary() override;
    bool initPlan(NVB::Info::Plan::Base* plan) override;
    bool fromPlan(NVB::Info::Plan::Base* plan) override;

    // The tier of an Azure account from the storage table, empty when unknown.
    static QString azureAccountType(const QUuid& id);

    QCheckBox* compressionBox() const { return m_compression; }
    QCheckBox* encryptionBox() const { return m_encryption; }
    QWidget* encryptionBlock() const { return m_encryptionBlock; }
    QComboBox* algorithmBox() const { return m_algorithm; }
    QLineEdit* passwordEdit() const { return m_password; }
    QLineEdit* confirmEdit() const { return m_confirm; }
    QLineEdit* hintEdit() const { return m_hint; }
    QCheckBox* sseBox() const { return m_sse; }
    QComboBox* storageClassBox() const { return m_storageClass; }
    QLabel* storageClassLabel() const { return m_storageClassLabel; }
    CheckBox* accelerationBox() const { return m_acceleration; }
    AttentionFrame* mismatchFrame() const { return m_mismatch; }
    AttentionFrame* fullBackupFrame() const { return m_fullBackup; }
    AttentionFrame* previewFrame() const { return m_preview; }
    AttentionFrame* freeEditionFrame() const { return m_freeEdition; }
    CurrentLanguageFrame* languageFrame() const { return m_language.data(); }
    QDateTime reBackupMoment() const { return m_reBackupMoment; }

signals:
    void setVisibleStorageClass(bool visible);
    void setVisibleSSE(bool visible);
    void setVisibleS3Acceleration(bool visible);
    void setAttentionMessage(const QString& message);
    void setAttentionVisible(bool visible);
    void setForceFullBackupAttentionVisible(bool visible);

public slots:
    void onDataChanged();

private:
    void addStorageClassToComboBox(const QString& text, AmazonS3StorageClass storageClass);
    void addStorageClassToComboBox(const QString& text, AzureBlobStorageClass storageClass);
    void setAmazonS3StorageClassInfo();
    void setAzureStorageClassInfo();
    int cloudType() const;
    bool isS3Type(int type) const;
    bool flag(const char* name) const;
    QString text(const char* name) const;

    bool m_isArchive;
    bool m_filePlan = true;
    QString m_lastPassword;
    bool m_initialCompression = false;
    bool m_initialEncryption = false;
    int m_initialEncryptionType = 2;
    bool m_dialogOpen = false;
    bool m_passwordAccepted = false;
    QDateTime m_reBackupMoment;
    int m_s3StorageClass = 1;
    int m_azureStorageClass = 0;

    QCheckBox* m_compression;
    QCheckBox* m_encryption;
    QWidget* m_encryptionBlock;
    QComboBox* m_algorithm;
    QLineEdit* m_password;
    QLineEdit* m_confirm;
    QLineEdit* m_hint;
    QCheckBox* m_sse;
    QLabel* m_storageClassLabel;
    QComboBox* m_storageClass;
    QLabel* m_storageClassDescription;
    CheckBox* m_acceleration;
    AttentionFrame* m_mismatch = nullptr;
    AttentionFrame* m_fullBackup = nullptr;
    AttentionFrame* m_freeEdition = nullptr;
    AttentionFrame* m_preview;
    QScopedPointer<CurrentLanguageFrame> m_language;
};

} // namespace NVB::GUI
