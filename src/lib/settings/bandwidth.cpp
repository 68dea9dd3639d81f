#include "settings/bandwidth.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QRegularExpressionValidator>
#include <QSignalBlocker>
#include <QVBoxLayout>

#include "core/nvldebug.h"
#include "stores/defaultsettings.h"

namespace NVB::GUI::Settings {

namespace {

const QString NoLimit = QStringLiteral("-1");

void load(const QString& stored, QCheckBox* box, QComboBox* speed)
{
    const QSignalBlocker boxBlocker(box);
    const QSignalBlocker speedBlocker(speed);
    const bool limited = stored != NoLimit && !stored.isEmpty();
    box->setChecked(limited);
    speed->setEnabled(limited);
    // The no-limit marker is never put into the list: it is no speed.
    if (limited)
        speed->setEditText(stored);
}

} // namespace

const QStringList Bandwidth::Speed = {QStringLiteral("64"), QStringLiteral("128"), QStringLiteral("256"),
    QStringLiteral("512"), QStringLiteral("1024"), QStringLiteral("2048"), QStringLiteral("4096"),
    QStringLiteral("8192"), QStringLiteral("16384")};

Bandwidth::Bandwidth(QWidget* parent)
    : QWidget(parent)
    , m_cloudBox(new QCheckBox(tr("Max speed:"), this))
    , m_cloudSpeed(new QComboBox(this))
    , m_localBox(new QCheckBox(tr("Max speed:"), this))
    , m_localSpeed(new QComboBox(this))
{
    setWindowTitle(tr("Bandwidth"));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(makeGroup(tr("When using cloud storage:"), m_cloudBox, m_cloudSpeed));
    layout->addWidget(makeGroup(tr("When using local storage:"), m_localBox, m_localSpeed));
    connect(this, &Bandwidth::saveSettings, this, &Bandwidth::onSaveSettings);
    loadSettings();
}

QWidget* Bandwidth::makeGroup(const QString& title, QCheckBox* box, QComboBox* speed)
{
    auto* group = new QGroupBox(title, this);
    auto* row = new QHBoxLayout(group);
    speed->setEditable(true);
    speed->addItems(Speed);
    speed->setInsertPolicy(QComboBox::NoInsert);
    speed->setValidator(new QRegularExpressionValidator(QRegularExpression(QStringLiteral("^[1-9]\\d{0,5}$")), speed));
    row->addWidget(box);
    row->addWidget(speed);
    row->addWidget(new QLabel(tr("KByte/s"), group));
    row->addStretch(1);
    connect(box, &QCheckBox::toggled, speed, &QComboBox::setEnabled);
    connect(box, &QCheckBox::toggled, this, &Bandwidth::saveSettings);
    connect(speed, qOverload<int>(&QComboBox::currentIndexChanged), this, &Bandwidth::saveSettings);
    connect(speed, &QComboBox::editTextChanged, this, &Bandwidth::saveSettings);
    return group;
}

void Bandwidth::loadSettings()
{
    const DefaultSettings* store = DefaultSettings::instance();
    load(store->getCloudBandwidth(), m_cloudBox, m_cloudSpeed);
    load(store->getLocalBandwidth(), m_localBox, m_localSpeed);
}

void Bandwidth::onSaveSettings()
{
    // An emptied edit while the box is checked is a limit being typed, not
    // "no limit"; keep the stored value until a speed stands there.
    auto text = [](QCheckBox* box, QComboBox* speed, const QString& stored) {
        if (!box->isChecked())
            return NoLimit;
        const QString typed = speed->currentText().trimmed();
        int pos = 0;
        QString copy = typed;
        if (speed->validator()->validate(copy, pos) != QValidator::Acceptable)
            return stored == NoLimit ? Speed.first() : stored;
        return typed;
    };
    DefaultSettings* store = DefaultSettings::instance();
    const bool ok = store->setCloudBandwidth(text(m_cloudBox, m_cloudSpeed, store->getCloudBandwidth()))
        && store->setLocalBandwidth(text(m_localBox, m_localSpeed, store->getLocalBandwidth()));
    const NVL::NvlDebug log(QStringLiteral("NVB"));
    if (ok)
        log.info() << QStringLiteral("Bandwidth change saved");
    else
        log.warning() << QStringLiteral("Cannot store the bandwidth limits");
}

} // namespace NVB::GUI::Settings
