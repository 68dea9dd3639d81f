#include "settings/connectionoptions.h"

#include <limits>

#include <QFormLayout>
#include <QSignalBlocker>
#include <QSpinBox>

#include "stores/defaultsettings.h"

namespace NVB::GUI::Settings {

ConnectionOptions::ConnectionOptions(QWidget* parent)
    : QWidget(parent)
    , m_attempts(new QSpinBox(this))
    , m_interval(new QSpinBox(this))
{
    setWindowTitle(tr("Connection options"));
    auto* form = new QFormLayout(this);
    form->setContentsMargins(0, 0, 0, 0);
    for (QSpinBox* box : {m_attempts, m_interval})
        box->setRange(1, std::numeric_limits<int>::max());
    m_interval->setSuffix(tr("msec"));
    form->addRow(tr("Number of attempts:"), m_attempts);
    form->addRow(tr("Time between retry attempts:"), m_interval);
    connect(m_attempts, qOverload<int>(&QSpinBox::valueChanged), this,
        [](int value) { DefaultSettings::instance()->setConnectionRetryAttempts(QString::number(value)); });
    connect(m_interval, qOverload<int>(&QSpinBox::valueChanged), this,
        [](int value) { DefaultSettings::instance()->setConnectionRetryInterval(QString::number(value)); });
    loadSettings();
}

void ConnectionOptions::loadSettings()
{
    const DefaultSettings* store = DefaultSettings::instance();
    const QSignalBlocker attempts(m_attempts);
    const QSignalBlocker interval(m_interval);
    m_attempts->setValue(store->getConnectionRetryAttempts().toInt());
    m_interval->setValue(store->getConnectionRetryInterval().toInt());
}

} // namespace NVB::GUI::Settings
