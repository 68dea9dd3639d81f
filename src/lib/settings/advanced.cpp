#include "settings/advanced.h"

#include <QComboBox>
#include <QCoreApplication>
#include <QFormLayout>
#include <QLabel>
#include <QSignalBlocker>
#include <QSpinBox>
#include <QVBoxLayout>

#include "core/apppath.h"
#include "core/loglevel.h"
#include "core/nvldebug.h"
#include "settings/pathselector.h"
#include "settings/sectionline.h"
#include "stores/defaultsettings.h"

namespace NVB::GUI::Settings {

namespace {

constexpr int MegabyteShift = 20;
constexpr int DefaultLevelIndex = 1;

QLabel* help(const QString& text, QWidget* parent)
{
    auto* label = new QLabel(QStringLiteral("<small>%1</small>").arg(text), parent);
    label->setWordWrap(true);
    return label;
}

QString megabytesToBytes(int megabytes)
{
    return QString::number(qint64(megabytes) << MegabyteShift);
}

int bytesToMegabytes(const QString& bytes)
{
    return int(bytes.toLongLong() >> MegabyteShift);
}

void store(bool ok, const QString& what)
{
    if (!ok)
        NVL::NvlDebug(QStringLiteral("NVB")).warning() << QStringLiteral("Cannot store the %1").arg(what);
}

} // namespace

Advanced::Advanced(QWidget* parent)
    : QWidget(parent)
    , m_threads(new QSpinBox(this))
    , m_chunk(new QSpinBox(this))
    , m_memory(new QSpinBox(this))
    , m_glacierQueue(new QSpinBox(this))
    , m_logLevel(new QComboBox(this))
    , m_rotation(new QSpinBox(this))
    , m_logPath(new PathSelector(this))
{
    setWindowTitle(tr("Advanced"));
    for (auto level : {NVL::LogManager::Error, NVL::LogManager::Warning, NVL::LogManager::Info, NVL::LogManager::Debug})
        m_levels.insert(int(level), level);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(new SectionLine(tr("General"), this));
    auto* general = new QFormLayout();
    m_threads->setRange(1, 100);
    general->addRow(tr("Max thread count:"), m_threads);
    general->addRow(QString(), help(tr("Specifies how many threads will be used for one backup plan."), this));
    m_chunk->setRange(5, 5120);
    m_chunk->setSuffix(tr(" MByte"));
    general->addRow(tr("Chunk size:"), m_chunk);
    general->addRow(QString(),
        new QLabel(QStringLiteral("<table><tr><td><small>%1</small></td></tr><tr><td><small>%2</small>"
                                  "</td></tr></table>")
                       .arg(tr("Chunk size must be between 5 MB and 5 GB"),
                           tr("Specifies the chunk size of file that will be uploaded to cloud storage.")),
            this));
    m_memory->setRange(100, 999999999);
    m_memory->setSuffix(tr(" MByte"));
    general->addRow(tr("Memory used:"), m_memory);
    layout->addLayout(general);
    // The Glacier queue has no place on the page but is kept in step with
    // the store all the same.
    m_glacierQueue->setRange(100, 999999999);
    m_glacierQueue->hide();

    layout->addWidget(new SectionLine(tr("Logging"), this));
    auto* logging = new QFormLayout();
    for (auto level : m_levels)
        m_logLevel->addItem(NVB::Defines::Log::Level::toString(level));
    logging->addRow(tr("Mode:"), m_logLevel);
    m_rotation->setRange(1, 1000);
    logging->addRow(tr("Rotation:"), m_rotation);
    m_logPath->setDefaultPath(NVB::Defines::AppPath::defaultLogs());
    logging->addRow(tr("Location:"), m_logPath);
    layout->addLayout(logging);
    layout->addStretch(1);

    connect(m_threads, qOverload<int>(&QSpinBox::valueChanged), this,
        [](int value) { store(DefaultSettings::instance()->setThreadCount(QString::number(value)), "thread count"); });
    connect(m_chunk, qOverload<int>(&QSpinBox::valueChanged), this,
        [](int value) { store(DefaultSettings::instance()->setChunkSize(megabytesToBytes(value)), "chunk size"); });
    connect(m_memory, qOverload<int>(&QSpinBox::valueChanged), this, [](int value) {
        store(DefaultSettings::instance()->setMemoryMaxUsage(megabytesToBytes(value)), "memory use");
    });
    connect(m_glacierQueue, qOverload<int>(&QSpinBox::valueChanged), this, [](int value) {
        store(DefaultSettings::instance()->setGlacierQueueSize(QString::number(value)), "Glacier queue size");
    });
    connect(m_logLevel, qOverload<int>(&QComboBox::currentIndexChanged), this, &Advanced::onLogLevelChanged);
    connect(m_rotation, qOverload<int>(&QSpinBox::valueChanged), this, &Advanced::onLogRotationChanged);
    connect(m_logPath, &PathSelector::currentPathChanged, this, [](const QString& path) {
        // The default folder is stored as "no choice", so that it follows
        // the installation if that moves.
        const QString value = path == NVB::Defines::AppPath::defaultLogs() ? QString() : path;
        store(DefaultSettings::instance()->setLogPath(value), "log location");
        // This program's own lines follow at once; the engine's at its next
        // start.
        NVL::NvlDebug::setLogFile(value.isEmpty()
                ? QString()
                : value + QLatin1Char('/') + QCoreApplication::applicationName() + QStringLiteral(".log"));
    });
    loadSettings();
}

void Advanced::loadSettings()
{
    const DefaultSettings* settings = DefaultSettings::instance();
    const QList<QWidget*> controls = {m_threads, m_chunk, m_memory, m_glacierQueue, m_logLevel, m_rotation, m_logPath};
    for (QWidget* control : controls)
        control->blockSignals(true);
    m_threads->setValue(settings->getThreadCount().toInt());
    m_chunk->setValue(bytesToMegabytes(settings->getChunkSize()));
    m_memory->setValue(bytesToMegabytes(settings->getMemoryMaxUsage()));
    m_glacierQueue->setValue(settings->getGlacierQueueSize().toInt());
    const int levelIndex = m_levels.key(NVB::Defines::Log::Level::getFromDefault().level(), DefaultLevelIndex);
    m_logLevel->setCurrentIndex(levelIndex);
    m_rotation->setValue(settings->getLogsRotateTimeout().toInt());
    m_logPath->setCurrentPath(NVB::Defines::AppPath::logs());
    for (QWidget* control : controls)
        control->blockSignals(false);
    m_rotation->setSuffix(m_rotation->value() < 2 ? tr(" day") : tr(" days"));
}

void Advanced::onLogLevelChanged(int index)
{
    const auto level = m_levels.value(index, NVL::LogManager::LogLevel(DefaultLevelIndex));
    store(NVB::Defines::Log::Level(level).saveToDefault(), "log level");
}

void Advanced::onLogRotationChanged(int value)
{
    m_rotation->setSuffix(value < 2 ? tr(" day") : tr(" days"));
    store(DefaultSettings::instance()->setLogsRotateTimeout(QString::number(value)), "log rotation");
}

} // namespace NVB::GUI::Settings
