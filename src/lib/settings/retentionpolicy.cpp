#include "settings/retentionpolicy.h"

#include <limits>

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QSignalBlocker>
#include <QSpinBox>
#include <QVBoxLayout>

#include "core/nvldebug.h"
#include "stores/defaultsettings.h"
#include "stores/retentionpolicyconstants.h"

namespace NVB::GUI::Settings {

namespace {

namespace Constants = NVB::Constants::RetentionPolicy;

constexpr int DaysInWeek = 7;
constexpr int DaysInMonth = 30;

} // namespace

RetentionPolicy::RetentionPolicy(QWidget* parent)
    : QWidget(parent)
    , m_deleteOlder(new QCheckBox(tr("Delete versions older than"), this))
    , m_age(new QSpinBox(this))
    , m_ageType(new QComboBox(this))
    , m_dateType(new QComboBox(this))
    , m_keepLast(new QCheckBox(tr("Always keep the last version"), this))
    , m_keepVersion(new QCheckBox(tr("Keep number of versions (for each file)"), this))
    , m_versions(new QSpinBox(this))
{
    setWindowTitle(tr("Backup"));
    m_age->setRange(1, 999999);
    m_ageType->addItems({tr("day"), tr("week"), tr("month")});
    m_dateType->addItems({tr("modification date"), tr("backup date")});
    m_versions->setRange(1, std::numeric_limits<int>::max());

    auto* ageRow = new QHBoxLayout();
    ageRow->addWidget(m_deleteOlder);
    ageRow->addWidget(m_age);
    ageRow->addWidget(m_ageType);
    ageRow->addWidget(new QLabel(tr("from"), this));
    ageRow->addWidget(m_dateType);
    ageRow->addStretch(1);
    auto* versionRow = new QHBoxLayout();
    versionRow->setContentsMargins(20, 0, 0, 0);
    versionRow->addWidget(new QLabel(tr("Number of versions:"), this));
    versionRow->addWidget(m_versions);
    versionRow->addStretch(1);
    auto* note = new QLabel(QStringLiteral("<small><b>%1</b> %2</small>")
                                .arg(tr("Note:"),
                                    tr("these settings can be applied as default for the current backup format only. "
                                       "For the new backup format, use retention policy settings on the 'Retention "
                                       "Policy' step of the backup wizard")),
        this);
    note->setWordWrap(true);

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(ageRow);
    auto* keepLastRow = new QHBoxLayout();
    keepLastRow->setContentsMargins(20, 0, 0, 0);
    keepLastRow->addWidget(m_keepLast);
    layout->addLayout(keepLastRow);
    layout->addWidget(m_keepVersion);
    layout->addLayout(versionRow);
    layout->addWidget(note);
    layout->addStretch(1);

    connect(m_deleteOlder, &QCheckBox::stateChanged, this, &RetentionPolicy::onDeleteVersionStateChanged);
    connect(m_keepVersion, &QCheckBox::stateChanged, this, &RetentionPolicy::onKeepVersionstateChanged);
    connect(m_ageType, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
        &RetentionPolicy::onAgeIntervalTypeChanged);
    connect(m_dateType, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
        &RetentionPolicy::onAgeIntervalTypeChanged);
    for (QCheckBox* box : {m_deleteOlder, m_keepLast, m_keepVersion})
        connect(box, &QCheckBox::stateChanged, this, &RetentionPolicy::saveSettings);
    for (QSpinBox* box : {m_age, m_versions})
        connect(box, QOverload<int>::of(&QSpinBox::valueChanged), this, &RetentionPolicy::saveSettings);
    for (QComboBox* box : {m_ageType, m_dateType})
        connect(box, QOverload<int>::of(&QComboBox::currentIndexChanged), this, &RetentionPolicy::saveSettings);
    connect(this, &RetentionPolicy::saveSettings, this, &RetentionPolicy::onSaveConfig);

    loadSettings();
}

QString RetentionPolicy::durationText(int days)
{
    if (days < 0)
        return QString::fromLatin1(Constants::SerializationSupportRT_Disabled);
    return QStringLiteral("%1.00:00:00").arg(days);
}

int RetentionPolicy::durationDays(const QString& text)
{
    if (text == QLatin1String(Constants::SerializationSupportRT_Disabled))
        return -1;
    const QStringList parts = text.split(QLatin1Char('.'));
    if (parts.size() < 2)
        return -1;
    bool ok = false;
    const int days = parts.first().toInt(&ok);
    return ok && days >= 0 ? days : -1;
}

void RetentionPolicy::loadSettings()
{
    const NVB::DefaultSettings* store = NVB::DefaultSettings::instance();
    if (!store)
        return;
    // Loading is no change of the user's: nothing may be written back.
    const QSignalBlocker blocker(this);

    const int days = durationDays(store->getSerializationSupportRetentionTime());
    m_deleteOlder->setChecked(days >= 0);
    if (days > 0) {
        // The largest unit that divides the days: 60 shows as 2 months.
        if (days % DaysInMonth == 0) {
            m_ageType->setCurrentIndex(2);
            m_age->setValue(days / DaysInMonth);
        } else if (days % DaysInWeek == 0) {
            m_ageType->setCurrentIndex(1);
            m_age->setValue(days / DaysInWeek);
        } else {
            m_ageType->setCurrentIndex(0);
            m_age->setValue(days);
        }
    }
    m_dateType->setCurrentIndex(store->getRetentionUseBackupDate() == QLatin1String("true") ? 1 : 0);
    m_keepLast->setChecked(store->getRetentionDeleteLastVersion() == QLatin1String("false"));
    const QString versions = store->getRetentionNumberOfVersions();
    const bool keep = versions != QLatin1String(Constants::KeepNumberOfVersions_Disasbled);
    m_keepVersion->setChecked(keep);
    if (keep)
        m_versions->setValue(versions.toInt());
    m_versions->setEnabled(keep);
    onAgeIntervalTypeChanged();
}

void RetentionPolicy::onDeleteVersionStateChanged(int state)
{
    const bool on = state != Qt::Unchecked;
    m_age->setEnabled(on);
    m_ageType->setEnabled(on);
    m_dateType->setEnabled(on);
    // Counting from the backup date would purge a file's only copy.
    m_keepLast->setEnabled(on && m_dateType->currentIndex() == 0);
}

void RetentionPolicy::onKeepVersionstateChanged(int state)
{
    m_versions->setEnabled(state == Qt::Checked);
}

void RetentionPolicy::onAgeIntervalTypeChanged()
{
    onDeleteVersionStateChanged(m_deleteOlder->checkState());
    onKeepVersionstateChanged(m_keepVersion->checkState());
}

void RetentionPolicy::onSaveConfig()
{
    NVB::DefaultSettings* store = NVB::DefaultSettings::instance();
    bool ok = store != nullptr;
    if (store) {
        if (m_deleteOlder->isChecked()) {
            int days = m_age->value();
            if (m_ageType->currentIndex() == 1)
                days *= DaysInWeek;
            else if (m_ageType->currentIndex() == 2)
                days *= DaysInMonth;
            ok = store->setSerializationSupportRetentionTime(durationText(days)) && ok;
            const bool keepLast = m_keepLast->isChecked() || m_dateType->currentIndex() == 1;
            ok = store->setRetentionDeleteLastVersion(keepLast ? QStringLiteral("false") : QStringLiteral("true"))
                && ok;
            ok = store->setRetentionUseBackupDate(
                     m_dateType->currentIndex() == 1 ? QStringLiteral("true") : QStringLiteral("false"))
                && ok;
        } else {
            ok = store->setSerializationSupportRetentionTime(
                     QString::fromLatin1(Constants::SerializationSupportRT_Disabled))
                && ok;
        }
        ok = store->setRetentionNumberOfVersions(m_keepVersion->isChecked()
                     ? QString::number(m_versions->value())
                     : QString::fromLatin1(Constants::KeepNumberOfVersions_Disasbled))
            && ok;
    }
    NVL::NvlDebug log(QStringLiteral("NVB"));
    if (ok)
        log.info() << "Success on change default retention policy";
    else
        log.error() << QStringLiteral("Can't change default retention policy: check the permissions of the "
                                      "configuration folder %1")
                           .arg(store ? store->filePath() : QString());
}

} // namespace NVB::GUI::Settings
