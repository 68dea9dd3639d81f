#include "settings/application.h"

#include <QApplication>
#include <QCheckBox>
#include <QFileInfo>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QMessageBox>
#include <QPushButton>
#include <QSignalBlocker>
#include <QSpinBox>
#include <QTimer>
#include <QToolButton>
#include <QVBoxLayout>

#include "core/nvldebug.h"
#include "core/providerdefines.h"
#include "core/transform.h"
#include "models/modelmanager.h"
#include "models/models.h"
#include "network/checklocalport.h"
#include "network/interface.h"
#include "settings/checkmasterpassworddialog.h"
#include "settings/movedatabase.h"
#include "settings/repositorystatusdialog.h"
#include "settings/sectionline.h"
#include "settings/setmasterpassworddialog.h"
#include "sql/database.h"
#include "stores/defaultsettings.h"

namespace NVB::GUI::Settings {

namespace {

constexpr int DebounceMs = 1000;
constexpr int WaitTickMs = 1000;
constexpr int LocationWidth = 300;

NVL::NvlDebugStream info()
{
    return NVL::NvlDebug(QStringLiteral("NVB")).info();
}

NVL::NvlDebugStream warning()
{
    return NVL::NvlDebug(QStringLiteral("NVB")).warning();
}

QString flag(bool value)
{
    return value ? QStringLiteral("true") : QStringLiteral("false");
}

} // namespace

Application::Application(QWidget* parent)
    : QWidget(parent)
    , m_masterPassword(new QCheckBox(tr("Protect console with master password"), this))
    , m_changeMasterPassword(new QToolButton(this))
    , m_location(new QLabel(this))
    , m_size(new QLabel(this))
    , m_move(new QPushButton(tr("Move Database"), this))
    , m_shrink(new QPushButton(tr("Shrink Database"), this))
    , m_synchronize(new QPushButton(tr("Synchronize Repository"), this))
    , m_description(new QLabel(this))
    , m_useHttp(new QCheckBox(tr("Enable HTTP:"), this))
    , m_httpPort(new QSpinBox(this))
    , m_useHttps(new QCheckBox(tr("Enable HTTPS:"), this))
    , m_httpsPort(new QSpinBox(this))
    , m_httpTimer(new QTimer(this))
    , m_httpsTimer(new QTimer(this))
{
    setWindowTitle(tr("Application"));
    auto* layout = new QVBoxLayout(this);

    auto* passwordRow = new QHBoxLayout();
    m_changeMasterPassword->setIcon(QIcon(QStringLiteral(":/images/settings.svg")));
    m_changeMasterPassword->setToolTip(tr("Change master password"));
    passwordRow->addWidget(m_masterPassword);
    passwordRow->addWidget(m_changeMasterPassword);
    passwordRow->addStretch(1);
    layout->addLayout(passwordRow);
    auto* note = new QLabel(
        tr("<small><b>Note:</b> You will have to enter the password every time you open the console</small>"), this);
    note->setWordWrap(true);
    layout->addWidget(note);

    auto* repository = new QGroupBox(tr("Repository"), this);
    auto* repositoryLayout = new QVBoxLayout(repository);
    auto* form = new QFormLayout();
    form->addRow(tr("Database location:"), m_location);
    form->addRow(tr("Database size:"), m_size);
    repositoryLayout->addLayout(form);
    auto* buttons = new QHBoxLayout();
    buttons->addWidget(m_move);
    buttons->addWidget(m_shrink);
    buttons->addWidget(m_synchronize);
    buttons->addStretch(1);
    repositoryLayout->addLayout(buttons);
    layout->addWidget(repository);

    layout->addWidget(new SectionLine(tr("Remote Access"), this));
    m_description->setOpenExternalLinks(true);
    m_description->setTextFormat(Qt::RichText);
    layout->addWidget(m_description);
    auto* ports = new QFormLayout();
    initRemoteAccessSpinBox(m_httpPort);
    initRemoteAccessSpinBox(m_httpsPort);
    ports->addRow(m_useHttp, m_httpPort);
    ports->addRow(m_useHttps, m_httpsPort);
    layout->addLayout(ports);
    layout->addStretch(1);

    for (QTimer* timer : {m_httpTimer, m_httpsTimer}) {
        timer->setSingleShot(true);
        timer->setInterval(DebounceMs);
    }
    connect(m_masterPassword, &QCheckBox::clicked, this, &Application::onSetMasterPasswordClicked);
    connect(m_changeMasterPassword, &QToolButton::clicked, this, &Application::onChangeMasterPasswordButtonClicked);
    connect(m_move, &QPushButton::clicked, this, &Application::onMoveDatabaseClicked);
    connect(m_shrink, &QPushButton::clicked, this, &Application::onShrinkClicked);
    connect(m_synchronize, &QPushButton::clicked, this, &Application::onSincAccount);
    connect(m_httpPort, qOverload<int>(&QSpinBox::valueChanged), m_httpTimer, qOverload<>(&QTimer::start));
    connect(m_httpsPort, qOverload<int>(&QSpinBox::valueChanged), m_httpsTimer, qOverload<>(&QTimer::start));
    connect(m_httpTimer, &QTimer::timeout, this, &Application::onRemoteAccessHttpChanged);
    connect(m_httpsTimer, &QTimer::timeout, this, &Application::onRemoteAccessHttpsChanged);
    connect(m_useHttp, &QCheckBox::clicked, this, &Application::onRemoteAccessHttpChanged);
    connect(m_useHttps, &QCheckBox::clicked, this, &Application::onRemoteAccessHttpsChanged);
    loadSettings();
}

void Application::loadSettings()
{
    const QString path = NVB::SQL::Database::connectionString();
    m_location->setText(m_location->fontMetrics().elidedText(path, Qt::ElideMiddle, LocationWidth));
    m_location->setToolTip(path);
    const QFileInfo file(path);
    m_size->setText(file.exists() ? SHARED::functions::help::transform::from_byte_to_norm(double(file.size()))
                                  : tr("The database file does not exist yet"));
    updateMasterPasswordUI();
    loadRemoteAccessSettings();
    emit defaultSettingsChanged();
}

void Application::onSaveSettings()
{
    saveSettings();
}

void Application::saveSettings()
{
    // Every control of this page writes through at once; nothing is left to
    // save here.
}

void Application::updateMasterPasswordUI()
{
    const bool set = !DefaultSettings::instance()->getMasterPassword().isEmpty();
    m_masterPassword->setChecked(set);
    m_changeMasterPassword->setEnabled(set);
}

void Application::onSetMasterPasswordClicked()
{
    if (DefaultSettings::instance()->getMasterPassword().isEmpty()) {
        SetMasterPasswordDialog(SetMasterPasswordDialog::Set, this).exec();
    } else if (CheckMasterPasswordDialog(this).exec() == QDialog::Accepted) {
        if (!DefaultSettings::instance()->setMasterPassword(QString()))
            warning() << QStringLiteral("Cannot remove the master password");
    }
    updateMasterPasswordUI();
}

void Application::onChangeMasterPasswordButtonClicked()
{
    SetMasterPasswordDialog(SetMasterPasswordDialog::Change, this).exec();
    updateMasterPasswordUI();
}

void Application::onShrinkClicked()
{
    if (QMessageBox::question(
            this, tr("Are you sure?"), tr("Shrink database?"), QMessageBox::Yes | QMessageBox::No, QMessageBox::No)
        != QMessageBox::Yes)
        return;
    info() << QStringLiteral("Shrink database");
    shrinkExec();
    loadSettings();
}

void Application::shrinkExec()
{
    setEnabled(false);
    QApplication::setOverrideCursor(Qt::WaitCursor);
    const QString path = NVB::SQL::Database::connectionString();
    const qint64 before = QFileInfo(path).size();
    const bool ok = NVB::SQL::Database::shrink();
    QApplication::restoreOverrideCursor();
    setEnabled(true);
    const qint64 after = QFileInfo(path).size();
    m_size->setText(SHARED::functions::help::transform::from_byte_to_norm(double(after)));
    if (!ok)
        warning() << QStringLiteral("Shrinking %1 failed").arg(path);
    if (after < before) {
        QMessageBox::information(this, tr("Info"),
            QStringLiteral("%1 %2").arg(tr("Shrinked reduced:"),
                SHARED::functions::help::transform::from_byte_to_norm(double(before - after))));
    }
}

void Application::onMoveDatabaseClicked()
{
    MoveDatabase(this).exec();
    loadSettings();
}

void Application::onSincAccount()
{
    const auto manager = ModelManager::instance();
    QAbstractItemModel* connections
        = manager ? manager->create(Models::Table::NvbStorageConnectionModelInfo::Type) : nullptr;
    RepositoryStatusDialog dialog(connections, this);
    connect(this, &Application::ForceClose, &dialog, &QDialog::close, Qt::QueuedConnection);
    dialog.exec();
    loadSettings();
}

void Application::initRemoteAccessSpinBox(QSpinBox* box)
{
    box->setButtonSymbols(QAbstractSpinBox::NoButtons);
    box->setRange(m_minPort, m_maxPort);
    box->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
}

void Application::loadRemoteAccessSettings()
{
    const DefaultSettings* store = DefaultSettings::instance();
    for (QWidget* widget : std::initializer_list<QWidget*> {m_useHttp, m_useHttps, m_httpPort, m_httpsPort})
        widget->blockSignals(true);
    m_useHttp->setChecked(store->getWebAccessUseHttp() == QLatin1String("true"));
    m_useHttps->setChecked(store->getWebAccessUseHttps() == QLatin1String("true"));
    m_httpPort->setValue(store->getWebAccessHttpPort().toInt());
    m_httpsPort->setValue(store->getWebAccessHttpsPort().toInt());
    for (QWidget* widget : std::initializer_list<QWidget*> {m_useHttp, m_useHttps, m_httpPort, m_httpsPort})
        widget->blockSignals(false);
    m_description->setText(remoteAccessDescription());
}

QString Application::remoteAccessDescription() const
{
    QString host = QStringLiteral("localhost");
    for (const auto& nic : NVL::Network::Interface::allInterfaces()) {
        if (!nic.isLoopback() && nic.protocol() != 1) {
            host = nic.address();
            break;
        }
    }
    const bool samePort = m_httpPort->value() == m_httpsPort->value();
    auto url = [&](const QString& scheme, int port, bool enabled) {
        const QString portText
            = !enabled && samePort ? QStringLiteral("<font color='red'>%1</font>").arg(port) : QString::number(port);
        if (!enabled)
            return QStringLiteral("%1://%2:%3").arg(scheme, host, portText);
        const QString link = QStringLiteral("%1://%2:%3").arg(scheme, host).arg(port);
        return QStringLiteral("<a href=\"%1\">%1</a>").arg(link);
    };
    const QString first = tr("Enable Web Interface to allow remote configuration of %1.")
                              .arg(NVB::defines::ProviderDefines::DisplayName());
    const QString second = tr("Access the web app at %1 or %2")
                               .arg(url(QStringLiteral("http"), m_httpPort->value(), m_useHttp->isChecked()),
                                   url(QStringLiteral("https"), m_httpsPort->value(), m_useHttps->isChecked()));
    return QStringLiteral("<table><tr><td><small>%1</small></td></tr><tr><td><small>%2</small></td></tr></table>")
        .arg(first, second);
}

void Application::onRemoteAccessHttpChanged()
{
    m_httpTimer->stop();
    updateWebAccessSettings(true, m_useHttp->isChecked(), m_httpPort->text().toInt());
}

void Application::onRemoteAccessHttpsChanged()
{
    m_httpsTimer->stop();
    updateWebAccessSettings(false, m_useHttps->isChecked(), m_httpsPort->text().toInt());
}

std::pair<bool, QString> Application::checkTcpPort(int port)
{
    if (port <= 0 || port > 65535)
        return {false, tr("The port number must be between 0 and 65536")};
    if (!NVL::Network::CheckLocalPort(port).check())
        return {false, tr("The port number %1 is already in use").arg(port)};
    return {true, QString()};
}

void Application::webAccessSettings(bool http, bool& enabled, int& port) const
{
    const DefaultSettings* store = DefaultSettings::instance();
    enabled = (http ? store->getWebAccessUseHttp() : store->getWebAccessUseHttps()) == QLatin1String("true");
    port = (http ? store->getWebAccessHttpPort() : store->getWebAccessHttpsPort()).toInt();
}

void Application::setWebAccessSettings(bool http, bool enabled, int port)
{
    DefaultSettings* store = DefaultSettings::instance();
    const QString stored = http ? store->getWebAccessUseHttp() : store->getWebAccessUseHttps();
    bool ok = true;
    if (stored != flag(enabled))
        ok = http ? store->setWebAccessUseHttp(flag(enabled)) : store->setWebAccessUseHttps(flag(enabled));
    ok = (http ? store->setWebAccessHttpPort(QString::number(port))
               : store->setWebAccessHttpsPort(QString::number(port)))
        && ok;
    if (!ok)
        throw tr("The web access settings could not be stored in %1.").arg(store->filePath());
}

void Application::updateWebAccessSettings(bool http, bool enabled, int port)
{
    try {
        // Switching off needs no check: a wrong stored port must always be
        // turned off.
        if (enabled) {
            const auto [free, message] = checkTcpPort(port);
            if (!free)
                throw message;
        }
        bool oldEnabled = false;
        int oldPort = 0;
        webAccessSettings(http, oldEnabled, oldPort);
        setWebAccessSettings(http, enabled, port);
        m_description->setText(remoteAccessDescription());
        waitWebAccessSettingsApplied(enabled, oldEnabled, port, oldPort);
    } catch (const QString& message) {
        warning() << message;
        emit webAccessRefused(message);
        QMessageBox::warning(this, QApplication::applicationDisplayName(), message);
        loadRemoteAccessSettings();
    }
}

void Application::waitWebAccessSettingsApplied(bool enabled, bool oldEnabled, int port, int oldPort)
{
    if (enabled == oldEnabled && (!enabled || port == oldPort))
        return;
    lockWebAccessUI(true);
    delete m_waitTimer;
    m_waitTimer = new QTimer(this);
    m_waitTimer->setInterval(WaitTickMs);
    // The engine holds the port once it serves it, and lets it go once it
    // stopped: a port that is busy means "on", a free one "off".
    const bool expected = !enabled;
    connect(m_waitTimer, &QTimer::timeout, this, [this, expected, oldPort] {
        m_waitTimer->stop();
        if (NVL::Network::CheckLocalPort(oldPort).check() == expected) {
            loadRemoteAccessSettings();
            lockWebAccessUI(false);
            m_waitTimer->deleteLater();
            m_waitTimer = nullptr;
            return;
        }
        m_waitTimer->start();
    });
    m_waitTimer->start();
}

void Application::lockWebAccessUI(bool lock)
{
    for (QWidget* widget :
        std::initializer_list<QWidget*> {m_useHttp, m_useHttps, m_httpPort, m_httpsPort, m_description})
        widget->setEnabled(!lock);
    if (lock)
        setCursor(Qt::WaitCursor);
    else
        unsetCursor();
}

} // namespace NVB::GUI::Settings
