#include "wizards/backup/pageadvancedfilter.h"

#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QVBoxLayout>

#include "cloud/cloudtype.h"
#include "records/plan/backupfile.h"
#include "wizards/common/pagecloud.h"

namespace NVB::GUI {

namespace {

QLabel* helpLabel(const QString& first, const QString& second, QWidget* parent)
{
    auto* label = new QLabel(
        QStringLiteral("<table><tr><td><small>%1</small></td></tr><tr><td><small>%2</small></td></tr></table>")
            .arg(first, second),
        parent);
    label->setContentsMargins(20, 0, 0, 0);
    return label;
}

// A line edit with its help below, both enabled by the control above them.
void addIndented(QVBoxLayout* layout, QAbstractButton* control, QLineEdit* edit, QLabel* help)
{
    auto* indent = new QVBoxLayout();
    indent->setContentsMargins(20, 0, 0, 0);
    indent->addWidget(edit);
    indent->addWidget(help);
    layout->addWidget(control);
    layout->addLayout(indent);
    edit->setEnabled(false);
    help->setEnabled(false);
    QObject::connect(control, &QAbstractButton::toggled, edit, &QWidget::setEnabled);
    QObject::connect(control, &QAbstractButton::toggled, help, &QWidget::setEnabled);
}

} // namespace

BackupPlanEditWizard::PageAdvancedFilter::PageAdvancedFilter(bool isArchive, QWidget* parent)
    : PageBase(tr("Advanced Filter"), parent)
    , m_isArchive(isArchive)
    , m_allFiles(new QRadioButton(tr("Backup all files in selected folders"), this))
    , m_include(new QRadioButton(tr("Backup files of these types:"), this))
    , m_includeValue(new QLineEdit(this))
    , m_exclude(new QRadioButton(tr("Do not backup files of these types:"), this))
    , m_excludeValue(new QLineEdit(this))
    , m_emptyFolders(new QCheckBox(tr("Backup empty folders"), this))
    , m_skipFolders(new QCheckBox(tr("Skip folders:"), this))
    , m_skipFoldersValue(new QLineEdit(this))
    , m_hidden(new QCheckBox(tr("Do not backup hidden files"), this))
    , m_inUse(new QCheckBox(tr("Do not back up files used by other processes"), this))
{
    setSubTitle(tr("Specify file types to backup or to skip"));
    m_allFiles->setChecked(true);

    const QString separated = tr("Separated by semicolon");
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_allFiles);
    addIndented(
        layout, m_include, m_includeValue, helpLabel(separated, tr("Specify file types like: *.png; *.txt"), this));
    addIndented(
        layout, m_exclude, m_excludeValue, helpLabel(separated, tr("Specify file types like: *.png; *.txt"), this));
    layout->addSpacing(8);
    layout->addWidget(m_emptyFolders);
    addIndented(layout, m_skipFolders, m_skipFoldersValue,
        helpLabel(separated, tr("Specify folders to skip like: tmp; My*"), this));
    layout->addWidget(m_hidden);
    layout->addWidget(m_inUse);
    layout->addStretch(1);

    registerField(QLatin1String(FieldBackupAllFiles), m_allFiles);
    registerField(QLatin1String(FieldUseBackupFileTypes), m_include);
    registerField(QLatin1String(FieldBackupFileTypesValue), m_includeValue);
    registerField(QLatin1String(FieldUseNotBakupFileTypes), m_exclude);
    registerField(QLatin1String(FieldNotBakupFileTypesValue), m_excludeValue);
    registerField(QLatin1String(FieldBackuEmptyFolders), m_emptyFolders);
    registerField(QLatin1String(FieldSkipFolders), m_skipFolders);
    registerField(QLatin1String(FieldSkipFoldersValue), m_skipFoldersValue);
    registerField(QLatin1String(FieldExcludeSystemFolders), m_hidden);
    registerField(QLatin1String(FieldSkipInUseFiles), m_inUse);

    for (QAbstractButton* button : {static_cast<QAbstractButton*>(m_allFiles), static_cast<QAbstractButton*>(m_include),
             static_cast<QAbstractButton*>(m_exclude), static_cast<QAbstractButton*>(m_skipFolders)})
        connect(button, &QAbstractButton::toggled, this, &PageAdvancedFilter::completeChanged);
    for (QLineEdit* edit : {m_includeValue, m_excludeValue, m_skipFoldersValue})
        connect(edit, &QLineEdit::textChanged, this, &PageAdvancedFilter::completeChanged);
    connect(this, &PageAdvancedFilter::visibleEmptyFoldersCheckBox, m_emptyFolders, &QWidget::setVisible);
}

bool BackupPlanEditWizard::PageAdvancedFilter::emptyFoldersVisible(bool isArchive, int cloudType)
{
    if (isArchive)
        return true;
    const auto type = static_cast<NVL::Cloud::Type>(cloudType);
    return (cloudType != 21 && NVL::Cloud::S3Compatible.contains(type)) || cloudType == 1 || cloudType == 33
        || NVL::Cloud::AmazonS3.contains(type);
}

bool BackupPlanEditWizard::PageAdvancedFilter::emptyFoldersShown() const
{
    return emptyFoldersVisible(m_isArchive, field(QLatin1String(PlanWizardBase::PageCloud::Field_CloudType)).toInt());
}

QString BackupPlanEditWizard::PageAdvancedFilter::text(const char* name) const
{
    return field(QLatin1String(name)).toString();
}

bool BackupPlanEditWizard::PageAdvancedFilter::flag(const char* name) const
{
    return field(QLatin1String(name)).toBool();
}

void BackupPlanEditWizard::PageAdvancedFilter::initializePage()
{
    PageBase::initializePage();
    emit visibleEmptyFoldersCheckBox(emptyFoldersShown());
}

bool BackupPlanEditWizard::PageAdvancedFilter::isComplete() const
{
    if (m_skipFolders->isChecked() && m_skipFoldersValue->text().isEmpty())
        return false;
    if (m_include->isChecked() && m_includeValue->text().isEmpty())
        return false;
    if (m_exclude->isChecked() && m_excludeValue->text().isEmpty())
        return false;
    return true;
}

bool BackupPlanEditWizard::PageAdvancedFilter::validatePage()
{
    return true;
}

int BackupPlanEditWizard::PageAdvancedFilter::nextId() const
{
    if (const auto* owner = qobject_cast<const BackupPlanEditWizard*>(wizard()))
        return owner->advancedFilterNextId();
    return PageCompressionEndEncryptionId;
}

QStringList BackupPlanEditWizard::PageAdvancedFilter::splitPatterns(const QString& value)
{
    // Only truly empty parts go; " *.txt" keeps its blank, as the user typed.
    return value.split(QLatin1Char(';'), Qt::SkipEmptyParts);
}

QString BackupPlanEditWizard::PageAdvancedFilter::summary()
{
    QString details;
    if (flag(FieldBackupAllFiles))
        details += detailRow(tr("Backup all files"));
    else if (flag(FieldUseBackupFileTypes))
        details += detailRow(
            QStringLiteral("%1: %2").arg(tr("Backup files types"), text(FieldBackupFileTypesValue).toHtmlEscaped()));
    else if (flag(FieldUseNotBakupFileTypes))
        details += detailRow(QStringLiteral("%1: %2").arg(
            tr("Do not backup files types"), text(FieldNotBakupFileTypesValue).toHtmlEscaped()));
    if (flag(FieldSkipFolders))
        details
            += detailRow(QStringLiteral("%1: %2").arg(tr("Skip folders"), text(FieldSkipFoldersValue).toHtmlEscaped()));
    if (flag(FieldExcludeSystemFolders))
        details += detailRow(tr("Do not backup hidden files"));
    if (emptyFoldersShown() && flag(FieldBackuEmptyFolders))
        details += detailRow(tr("Backup empty folders"));
    return details.isEmpty() ? details : headingRow(tr("File filter:")) + details;
}

bool BackupPlanEditWizard::PageAdvancedFilter::initPlan(NVB::Info::Plan::Base* plan)
{
    using NVB::Info::Plan::BackupFile;
    auto* file = dynamic_cast<BackupFile*>(plan);
    if (!file)
        return false;
    file->setBackupEmptyFolders(emptyFoldersShown() && flag(FieldBackuEmptyFolders));
    file->setExcludeSystemAndHidden(flag(FieldExcludeSystemFolders));
    if (flag(FieldBackupAllFiles)) {
        file->setFilterType(BackupFile::AllFiles);
    } else if (flag(FieldUseBackupFileTypes)) {
        file->setFilterType(BackupFile::OnlyListed);
        file->setFilter(splitPatterns(text(FieldBackupFileTypesValue)));
    } else if (flag(FieldUseNotBakupFileTypes)) {
        file->setFilterType(BackupFile::AllButListed);
        file->setFilter(splitPatterns(text(FieldNotBakupFileTypesValue)));
    }
    if (flag(FieldSkipFolders))
        file->setExcludeFolderList(splitPatterns(text(FieldSkipFoldersValue)));
    file->setSkipInUseFiles(flag(FieldSkipInUseFiles));
    return true;
}

bool BackupPlanEditWizard::PageAdvancedFilter::fromPlan(NVB::Info::Plan::Base* plan)
{
    using NVB::Info::Plan::BackupFile;
    auto* file = dynamic_cast<BackupFile*>(plan);
    if (!file)
        return false;
    setField(QLatin1String(FieldBackuEmptyFolders), file->backupEmptyFolders());
    setField(QLatin1String(FieldExcludeSystemFolders), file->excludeSystemAndHidden());
    setField(QLatin1String(FieldSkipInUseFiles), file->skipInUseFiles());
    const QString filter = file->filter().join(QLatin1Char(';'));
    switch (file->filterType()) {
    case BackupFile::OnlyListed:
        setField(QLatin1String(FieldUseBackupFileTypes), true);
        setField(QLatin1String(FieldBackupFileTypesValue), filter);
        break;
    case BackupFile::AllButListed:
        setField(QLatin1String(FieldUseNotBakupFileTypes), true);
        setField(QLatin1String(FieldNotBakupFileTypesValue), filter);
        break;
    default:
        setField(QLatin1String(FieldBackupAllFiles), true);
        break;
    }
    if (!file->excludeFolderList().isEmpty()) {
        setField(QLatin1String(FieldSkipFolders), true);
        setField(QLatin1String(FieldSkipFoldersValue), file->excludeFolderList().join(QLatin1Char(';')));
    }
    return true;
}

} // namespace NVB::GUI
