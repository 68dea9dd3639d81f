#include "wizards/backup/pagecompressionendencryption.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QSignalBlocker>
#include <QUuid>
#include <QVBoxLayout>

#include "app/application.h"
#include "cloud/cloudconfig.h"
#include "cloud/cloudtype.h"
#include "cloud/storageaccountconfigformat.h"
#include "core/licenserestrictions.h"
#include "core/nvldebug.h"
#include "models/modelmanager.h"
#include "models/models.h"
#include "records/plan/backupfile.h"
#include "stores/rebranding.h"
#include "stores/rebrandingkeys.h"
#include "widgets/attentionframe.h"
#include "widgets/checkbox.h"
#include "wizards/backup/currentlanguageframe.h"
#include "wizards/backup/storageclassinfo.h"
#include "wizards/common/pagecloud.h"

namespace NVB::GUI {

namespace {

namespace Keys = NVB::Defines::RebrandingKeys;
using Encyption = NVB::Info::Plan::BackupEncyption;
using StorageInfo = NVB::Info::Plan::BackupStorageInfo;

constexpr int AmazonS3Unified = 37;
constexpr int AzureType = 3;

bool rebranding(const char* key)
{
    const NVB::Defines::Rebranding* values = NVB::Defines::Rebranding::instance();
    return values && values->value(key).toBool();
}

} // namespace

const QMap<int, QString>& BackupPlanEditWizard::PageCompressionEndEncryption::EncryptionType()
{
    static const QMap<int, QString> types {{Encyption::AES128, Encyption::typeToStr(Encyption::AES128)},
        {Encyption::AES192, Encyption::typeToStr(Encyption::AES192)},
        {Encyption::AES256, Encyption::typeToStr(Encyption::AES256)},
        {Encyption::DES64, Encyption::typeToStr(Encyption::DES64)},
        {Encyption::DES112, Encyption::typeToStr(Encyption::DES112)},
        {Encyption::TripleDES168, Encyption::typeToStr(Encyption::TripleDES168)}};
    return types;
}

BackupPlanEditWizard::PageCompressionEndEncryption::PageCompressionEndEncryption(bool isArchive, QWidget* parent)
    : PageBase(tr("Compression and Encryption"), parent)
    , m_isArchive(isArchive)
    , m_compression(new QCheckBox(tr("Enable compression"), this))
    , m_encryption(new QCheckBox(tr("Enable encryption"), this))
    , m_encryptionBlock(new QWidget(this))
    , m_algorithm(new QComboBox(m_encryptionBlock))
    , m_password(new QLineEdit(m_encryptionBlock))
    , m_confirm(new QLineEdit(m_encryptionBlock))
    , m_hint(new QLineEdit(m_encryptionBlock))
    , m_sse(new QCheckBox(tr("Use Server Side Encryption"), this))
    , m_storageClassLabel(new QLabel(this))
    , m_storageClass(new QComboBox(this))
    , m_storageClassDescription(new QLabel(this))
    , m_acceleration(new CheckBox(this))
    , m_preview(new AttentionFrame(tr("Public preview of blob-level tiering and Archive access tier should be added to "
                                      "your subscription. This is not recommended for production workloads until the "
                                      "feature reaches GA."),
          AttentionFrame::Warning, this))
    , m_language(new CurrentLanguageFrame())
{
    setSubTitle(tr("Specify compression and encryption options"));

    for (int key : {Encyption::AES128, Encyption::AES192, Encyption::AES256})
        m_algorithm->addItem(EncryptionType().value(key), key);
    m_algorithm->setCurrentIndex(2);
    for (QWidget* widget : {static_cast<QWidget*>(m_algorithm), static_cast<QWidget*>(m_password),
             static_cast<QWidget*>(m_confirm), static_cast<QWidget*>(m_hint)})
        widget->setMinimumWidth(200);
    m_password->setEchoMode(QLineEdit::Password);
    m_confirm->setEchoMode(QLineEdit::Password);
    m_language->watch(m_password);
    m_language->watch(m_confirm);

    auto* form = new QFormLayout(m_encryptionBlock);
    form->setContentsMargins(20, 0, 0, 0);
    form->addRow(tr("Algorithm:"), m_algorithm);
    form->addRow(tr("Password:"), m_password);
    form->addRow(tr("Confirm password:"), m_confirm);
    form->addRow(tr("Hint:"), m_hint);
    m_encryptionBlock->setEnabled(false);
    connect(m_encryption, &QCheckBox::toggled, m_encryptionBlock, &QWidget::setEnabled);

    m_storageClassDescription->setWordWrap(true);
    m_acceleration->setHtml(QStringLiteral("<table><tr><td>%1</td></tr><tr><td><small>%2</small></td></tr></table>")
                                .arg(tr("Use S3 Transfer Acceleration"),
                                    tr("S3 Transfer Acceleration speeds up file transfer for an extra fee. Ensure that "
                                       "the target bucket has this feature enabled.")));
    auto* classRow = new QHBoxLayout();
    classRow->addWidget(m_storageClassLabel);
    classRow->addWidget(m_storageClass);
    classRow->addStretch(1);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_compression);
    layout->addWidget(m_encryption);
    layout->addWidget(m_encryptionBlock);
    if (NVB::License::LicenseRestrictions::isFreeEdition()) {
        // The free edition offers neither; one note says so instead of the
        // password and full backup notes, which could never show.
        m_freeEdition = new AttentionFrame(
            tr("Encryption and compression are not available in FREE edition"), AttentionFrame::Information, this);
        layout->addWidget(m_freeEdition);
        m_compression->setEnabled(false);
        m_encryption->setEnabled(false);
        m_sse->setEnabled(false);
    } else {
        m_mismatch = new AttentionFrame(
            tr("The password and confirmation password do not match"), AttentionFrame::Error, this);
        m_fullBackup = new AttentionFrame(tr("This change will force a Full backup"), AttentionFrame::Warning, this);
        m_mismatch->setVisible(false);
        m_fullBackup->setVisible(false);
        layout->addWidget(m_mismatch);
        layout->addWidget(m_fullBackup);
        connect(this, &PageCompressionEndEncryption::setAttentionVisible, m_mismatch, &QWidget::setVisible);
        connect(this, &PageCompressionEndEncryption::setAttentionMessage, m_mismatch, &AttentionFrame::setText);
        connect(this, &PageCompressionEndEncryption::setForceFullBackupAttentionVisible, m_fullBackup,
            &QWidget::setVisible);
    }
    layout->addSpacing(8);
    layout->addWidget(m_sse);
    layout->addLayout(classRow);
    layout->addWidget(m_storageClassDescription);
    layout->addWidget(m_preview);
    layout->addWidget(m_acceleration);
    layout->addStretch(1);
    m_preview->setVisible(false);
    if (!rebranding(Keys::Compression::Visible))
        m_compression->setVisible(false);
    if (!rebranding(Keys::Encryption::Visible)) {
        m_encryption->setVisible(false);
        m_encryptionBlock->setVisible(false);
    }

    for (QWidget* widget : {static_cast<QWidget*>(m_storageClassLabel), static_cast<QWidget*>(m_storageClass),
             static_cast<QWidget*>(m_storageClassDescription)})
        connect(this, &PageCompressionEndEncryption::setVisibleStorageClass, widget, &QWidget::setVisible);
    connect(this, &PageCompressionEndEncryption::setVisibleSSE, m_sse, &QWidget::setVisible);
    connect(this, &PageCompressionEndEncryption::setVisibleS3Acceleration, m_acceleration, &QWidget::setVisible);
    emit setVisibleStorageClass(false);
    emit setVisibleSSE(false);
    emit setVisibleS3Acceleration(false);

    registerField(QLatin1String(FieldUseCompression), m_compression);
    registerField(QLatin1String(FieldUseEncryption), m_encryption);
    registerField(QLatin1String(FieldEncryptionType), m_algorithm);
    registerField(QLatin1String(FieldEncryptionPassword), m_password);
    registerField(QLatin1String(FieldEncryptionConfirmPassword), m_confirm);
    registerField(QLatin1String(FieldEncryptionHint), m_hint);
    registerField(QLatin1String(FieldUseSSE), m_sse);
    registerField(QLatin1String(FieldUseS3Acceleration), m_acceleration);

    for (QLineEdit* edit : {m_password, m_confirm, m_hint})
        connect(edit, &QLineEdit::textChanged, this, &PageCompressionEndEncryption::onDataChanged);
    connect(m_encryption, &QCheckBox::toggled, this, &PageCompressionEndEncryption::onDataChanged);
    connect(m_storageClass, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
        &PageCompressionEndEncryption::onDataChanged);
    if (isArchive) {
        // Either change starts a new generation, which the frame announces.
        connect(m_compression, &QCheckBox::toggled, this, &PageCompressionEndEncryption::onDataChanged);
        connect(m_algorithm, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
            &PageCompressionEndEncryption::onDataChanged);
    }
}

BackupPlanEditWizard::PageCompressionEndEncryption::~PageCompressionEndEncryption() = default;

bool BackupPlanEditWizard::PageCompressionEndEncryption::flag(const char* name) const
{
    return field(QLatin1String(name)).toBool();
}

QString BackupPlanEditWizard::PageCompressionEndEncryption::text(const char* name) const
{
    return field(QLatin1String(name)).toString();
}

int BackupPlanEditWizard::PageCompressionEndEncryption::cloudType() const
{
    return field(QLatin1String(PlanWizardBase::PageCloud::Field_CloudType)).toInt();
}

bool BackupPlanEditWizard::PageCompressionEndEncryption::isS3Type(int type) const
{
    return NVL::Cloud::AmazonS3.contains(static_cast<NVL::Cloud::Type>(type));
}

void BackupPlanEditWizard::PageCompressionEndEncryption::addStorageClassToComboBox(
    const QString& text, AmazonS3StorageClass storageClass)
{
    m_storageClass->addItem(text, static_cast<int>(storageClass));
    const int row = m_storageClass->count() - 1;
    m_storageClass->setItemData(row, StorageClassInfo::AmazonS3::toolTip(storageClass), Qt::ToolTipRole);
    if (storageClass == m_s3StorageClass)
        m_storageClass->setCurrentIndex(row);
}

void BackupPlanEditWizard::PageCompressionEndEncryption::addStorageClassToComboBox(
    const QString& text, AzureBlobStorageClass storageClass)
{
    m_storageClass->addItem(text, static_cast<int>(storageClass));
    const int row = m_storageClass->count() - 1;
    m_storageClass->setItemData(row, StorageClassInfo::Azure::toolTip(storageClass), Qt::ToolTipRole);
    if (storageClass == m_azureStorageClass)
        m_storageClass->setCurrentIndex(row);
}

void BackupPlanEditWizard::PageCompressionEndEncryption::setAmazonS3StorageClassInfo()
{
    const bool visible = rebranding(Keys::AmazonS3::StorageClass::Visible);
    emit setVisibleStorageClass(visible);
    if (!visible)
        return;
    m_storageClassLabel->setText(tr("Storage class:"));
    m_storageClassDescription->setText(
        QStringLiteral("<small>%1</small>")
            .arg(tr("Storage class describes under which conditions the data will be stored, including data "
                    "durability, availability, price and more. Choose the one that fits your requirements for this "
                    "set of data.")));
    m_storageClass->clear();
    addStorageClassToComboBox(tr("Standard"), StorageInfo::Standard);
    addStorageClassToComboBox(tr("Intelligent-Tiering"), StorageInfo::IntelligentTiering);
    addStorageClassToComboBox(tr("Standard-IA"), StorageInfo::StandardIA);
    addStorageClassToComboBox(tr("One Zone-IA"), StorageInfo::OneZoneIA);
    addStorageClassToComboBox(tr("Glacier Flexible Retrieval"), StorageInfo::GlacierFlexibleRetrieval);
    addStorageClassToComboBox(tr("Glacier Instant Retrieval"), StorageInfo::GlacierInstantRetrieval);
    addStorageClassToComboBox(tr("Glacier Deep Archive"), StorageInfo::GlacierDeepArchive);
}

void BackupPlanEditWizard::PageCompressionEndEncryption::setAzureStorageClassInfo()
{
    emit setVisibleStorageClass(true);
    m_storageClassLabel->setText(tr("Access tier:"));
    m_storageClassDescription->setText(
        QStringLiteral("<small>%1</small>")
            .arg(tr("Storage tier describes under which conditions the data will be stored, including data "
                    "durability, availability, price and more. Choose the one that fits your requirements for this "
                    "set of data.")));
    m_storageClass->clear();
    addStorageClassToComboBox(tr("Default"), StorageInfo::Default);
    addStorageClassToComboBox(tr("Cool"), StorageInfo::Cool);
    addStorageClassToComboBox(tr("Archive"), StorageInfo::Archive);
}

QString BackupPlanEditWizard::PageCompressionEndEncryption::azureAccountType(const QUuid& id)
{
    const auto manager = ModelManager::instance();
    QAbstractItemModel* model = manager ? manager->create(Models::Table::NvbStorageConnectionModelInfo::Type) : nullptr;
    if (!model)
        return QString();
    const QModelIndexList hits = model->match(model->index(0, 1), Qt::DisplayRole, id.toString(), 1, Qt::MatchExactly);
    if (hits.isEmpty())
        return QString();
    const QJsonObject account
        = QJsonDocument::fromJson(model->index(hits.first().row(), 8).data().toString().toUtf8()).object();
    if (Application::isStandalon())
        return account.value(NVL::Cloud::Config::AzureBlob::AccountTypes::Key).toString();
    namespace Format = NVB::Info::StorageAccountConfigFormat;
    return account.value(Format::Mns::AdditionalSettings::Key)
        .toObject()
        .value(Format::Mns::AdditionalSettings::AzureBlob::AccountType)
        .toString();
}

void BackupPlanEditWizard::PageCompressionEndEncryption::initializePage()
{
    PageBase::initializePage();
    emit setVisibleStorageClass(false);
    emit setVisibleSSE(false);
    emit setVisibleS3Acceleration(false);
    {
        const QSignalBlocker blocker(m_storageClass);
        const int type = cloudType();
        if (isS3Type(type)) {
            emit setVisibleSSE(rebranding(Keys::SSE::Visible));
            if (type != AmazonS3Unified) {
                emit setVisibleS3Acceleration(rebranding(Keys::AmazonS3::S3Accelerate::Visible));
                setAmazonS3StorageClassInfo();
            }
        } else if (type == AzureType
            && azureAccountType(QUuid(text(PlanWizardBase::PageCloud::Field_CloudId)))
                != NVL::Cloud::Config::AzureBlob::AccountTypes::Value::AzureStack) {
            setAzureStorageClassInfo();
        }
    }
    m_lastPassword = text(FieldEncryptionPassword);
}

bool BackupPlanEditWizard::PageCompressionEndEncryption::isComplete() const
{
    if (!flag(FieldUseEncryption))
        return true;
    const QString password = text(FieldEncryptionPassword);
    if (password.isEmpty())
        return false;
    if (text(FieldEncryptionHint).contains(password, Qt::CaseSensitive))
        return false;
    return text(FieldEncryptionConfirmPassword) == password;
}

void BackupPlanEditWizard::PageCompressionEndEncryption::onDataChanged()
{
    const bool encryption = flag(FieldUseEncryption);
    const QString password = text(FieldEncryptionPassword);
    const QString hint = text(FieldEncryptionHint);
    if (encryption && password == text(FieldEncryptionConfirmPassword)) {
        if (!password.isEmpty() && !hint.isEmpty() && hint.contains(password, Qt::CaseSensitive))
            QMessageBox::warning(this, Application::applicationName(),
                QStringLiteral("%1%2%3").arg(
                    tr("<tr><td>The hint can't contain the password.</td></tr><tr><td></td></tr>"),
                    tr("<tr><td><span style = 'font-weight: normal'>This is a security risk. Enter a "
                       "different</span></td></tr>"),
                    tr("<tr><td><span style = 'font-weight: normal'>hint or password.</span></td></tr>")),
                QMessageBox::Ok);
        emit setAttentionVisible(false);
    } else {
        emit setAttentionVisible(encryption);
    }
    if (m_isArchive && wizard() && wizard()->property("IsEdit").toBool()) {
        const bool changed = flag(FieldUseCompression) != m_initialCompression || encryption != m_initialEncryption
            || password != m_lastPassword || m_algorithm->currentData().toInt() != m_initialEncryptionType;
        emit setForceFullBackupAttentionVisible(changed);
    }
    const int type = cloudType();
    if (type == AzureType && m_storageClass->count() > 0) {
        m_azureStorageClass = m_storageClass->currentData().toInt();
        m_preview->setVisible(m_azureStorageClass != StorageInfo::Default);
    } else if (isS3Type(type) && m_storageClass->count() > 0) {
        m_s3StorageClass = m_storageClass->currentData().toInt();
    }
    emit completeChanged();
}

bool BackupPlanEditWizard::PageCompressionEndEncryption::validatePage()
{
    bool ok = isComplete();
    const QString password = text(FieldEncryptionPassword);
    if (password != m_lastPassword)
        m_passwordAccepted = false;
    if (!flag(FieldUseEncryption) || !ok || m_passwordAccepted)
        return ok;
    // The wizard may call again while a box is open.
    if (m_dialogOpen)
        return false;
    m_dialogOpen = true;
    if (m_lastPassword.isEmpty() || !m_filePlan) {
        QMessageBox box(QMessageBox::Information, QStringLiteral("Write down your password!"),
            QStringLiteral("Make sure to have the new encryption key noted somewhere safe. The data cannot be "
                           "restored if the key is lost."),
            QMessageBox::Ok | QMessageBox::Cancel, this);
        box.setDefaultButton(QMessageBox::Cancel);
        ok = box.exec() == QMessageBox::Ok;
    } else if (!m_isArchive) {
        QMessageBox box(QMessageBox::Question, QStringLiteral("Encryption option has changed!"),
            QStringLiteral("Encryption option has changed. Do you want to rebackup all files with new encryption?\n\n"
                           "Make sure to have the new encryption key noted somewhere safe. The data cannot be "
                           "restored if the key is lost."),
            QMessageBox::Ok | QMessageBox::No | QMessageBox::Cancel, this);
        box.setDefaultButton(QMessageBox::Ok);
        const int answer = box.exec();
        if (answer == QMessageBox::Cancel)
            ok = false;
        else if (answer == QMessageBox::Ok)
            m_reBackupMoment = QDateTime::currentDateTime();
    }
    m_dialogOpen = false;
    m_lastPassword = password;
    m_passwordAccepted = ok;
    return ok;
}

int BackupPlanEditWizard::PageCompressionEndEncryption::nextId() const
{
    return m_isArchive ? PageConsistencyCheckId : PageScheduleId;
}

QString BackupPlanEditWizard::PageCompressionEndEncryption::summary()
{
    QString rows = headingRow(tr("Backup options:"));
    rows += detailRow(flag(FieldUseCompression) ? tr("Compression: enabled") : tr("Compression: disabled"));
    if (flag(FieldUseEncryption))
        rows += QStringLiteral("<tr><td></td><td>%1: %2</td></tr>")
                    .arg(tr("Encryption"), EncryptionType().value(m_algorithm->currentData().toInt()));
    else
        rows += detailRow(tr("Encryption: disabled"));
    const int type = cloudType();
    if (isS3Type(type)) {
        if (flag(FieldUseSSE))
            rows += detailRow(tr("Use Server Side Encryption"));
        if (type != AmazonS3Unified) {
            static const QMap<int, const char*> classes {{StorageInfo::StandardIA, "Use Standard-IA Storage"},
                {StorageInfo::OneZoneIA, "Use One Zone-IA Storage"},
                {StorageInfo::GlacierFlexibleRetrieval, "Use Glacier Storage"},
                {StorageInfo::IntelligentTiering, "Use Intelligent Tiering"},
                {StorageInfo::GlacierDeepArchive, "Use Glacier Deep Archive"},
                {StorageInfo::GlacierInstantRetrieval, "Glacier Instant Retrieval"}};
            if (const char* row = classes.value(m_s3StorageClass))
                rows += detailRow(tr(row));
            if (flag(FieldUseS3Acceleration))
                rows += detailRow(tr("Use S3 Transfer Acceleration"));
        }
    } else if (type == AzureType) {
        if (m_azureStorageClass == StorageInfo::Archive)
            rows += detailRow(tr("Use Azure Archive"));
        else if (m_azureStorageClass == StorageInfo::Cool)
            rows += detailRow(tr("Use Azure Cool"));
    }
    return rows;
}

bool BackupPlanEditWizard::PageCompressionEndEncryption::initPlan(NVB::Info::Plan::Base* plan)
{
    auto* backup = dynamic_cast<NVB::Info::Plan::Backup*>(plan);
    if (!backup)
        return false;
    backup->setUseCompression(flag(FieldUseCompression));
    if (flag(FieldUseEncryption)) {
        backup->encryption().setEnabled(true);
        const int index = field(QLatin1String(FieldEncryptionType)).toInt();
        if (index < Encyption::AES128 || index > Encyption::TripleDES168) {
            NVL::NvlDebug(QStringLiteral("NVB")).warning() << "Unknown encryption type!";
            return false;
        }
        backup->encryption().setEncryptionType(static_cast<Encyption::Type>(index));
        backup->encryption().setPassword(text(FieldEncryptionPassword));
        backup->encryption().setHint(text(FieldEncryptionHint).toUtf8().toBase64());
    }
    const int type = cloudType();
    if (isS3Type(type) && rebranding(Keys::AmazonS3::StorageClass::Visible)) {
        backup->storageInfo().setStorageClassAmazonS3(static_cast<AmazonS3StorageClass>(
            m_storageClass->count() > 0 ? m_storageClass->currentData().toInt() : m_s3StorageClass));
        backup->storageInfo().setUseSSE(flag(FieldUseSSE));
        backup->storageInfo().setUseS3Accelerated(flag(FieldUseS3Acceleration));
    } else if (type == AzureType) {
        backup->storageInfo().setStorageClassAzureBlob(static_cast<AzureBlobStorageClass>(
            m_storageClass->count() > 0 ? m_storageClass->currentData().toInt() : m_azureStorageClass));
    }
    if (auto* file = dynamic_cast<NVB::Info::Plan::BackupFile*>(backup))
        file->setReBackupModifiedSince(m_reBackupMoment);
    return true;
}

bool BackupPlanEditWizard::PageCompressionEndEncryption::fromPlan(NVB::Info::Plan::Base* plan)
{
    auto* backup = dynamic_cast<NVB::Info::Plan::Backup*>(plan);
    if (!backup)
        return false;
    m_isArchive = backup->isArchive();
    m_filePlan = backup->type() == static_cast<int>(NVB::Info::Plan::SubType::File);
    if (const auto* file = dynamic_cast<const NVB::Info::Plan::BackupFile*>(backup); file && m_filePlan)
        m_reBackupMoment = file->reBackupModifiedSince();
    if (!NVB::License::LicenseRestrictions::isFreeEdition()) {
        m_initialCompression = backup->useCompression();
        setField(QLatin1String(FieldUseCompression), m_initialCompression);
        const Encyption& encryption = backup->encryption();
        m_initialEncryption = encryption.isEnabled();
        setField(QLatin1String(FieldUseEncryption), m_initialEncryption);
        if (m_initialEncryption) {
            m_initialEncryptionType = encryption.encryptionType();
            m_lastPassword = encryption.password();
            setField(QLatin1String(FieldEncryptionPassword), encryption.password());
            setField(QLatin1String(FieldEncryptionConfirmPassword), encryption.password());
            setField(QLatin1String(FieldEncryptionHint), QString::fromUtf8(QByteArray::fromBase64(encryption.hint())));
            m_passwordAccepted = true;
            if (encryption.encryptionType() <= Encyption::AES256)
                m_algorithm->setCurrentIndex(encryption.encryptionType());
            else
                NVL::NvlDebug(QStringLiteral("NVB")).warning() << "Encryption type don't support!";
        }
    }
    setField(QLatin1String(FieldUseSSE), backup->storageInfo().useSSE());
    setField(QLatin1String(FieldUseS3Acceleration), backup->storageInfo().useS3Accelerated());
    m_s3StorageClass = backup->storageInfo().storageClassAmazonS3();
    m_azureStorageClass = backup->storageInfo().storageClassAzureBlob();
    if (cloudType() == AzureType && m_azureStorageClass != StorageInfo::Default)
        m_preview->setVisible(true);
    return true;
}

} // namespace NVB::GUI
