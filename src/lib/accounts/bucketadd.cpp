#include "bucketadd.h"

#include <QComboBox>
#include <QEvent>
#include <QHBoxLayout>
#include <QPushButton>
#include <QToolButton>

#include "app/guiconfig.h"
#include "app/icons/iconmanager.h"
#include "containercombo.h"

namespace NVB::GUI::Settings::Account {

BucketAdd::BucketAdd(NVL::Cloud::Type type, QWidget* parent)
    : Storages::Add(type, parent)
    , m_bucket(new QComboBox(this))
    , m_addBucket(new QToolButton(this))
{
    m_bucket->setEnabled(false);
    m_addBucket->setIcon(IconManager::icon(IconManager::Add));
    m_addBucket->setStyleSheet(NVB::GUI::Config::ToolButton::StyleSheet);
    m_addBucket->setToolTip(tr("Add New Container"));
    m_addBucket->setEnabled(false);
    m_bucket->installEventFilter(this);
}

QHBoxLayout* BucketAdd::bucketRow()
{
    auto* row = new QHBoxLayout;
    row->setSpacing(2);
    row->addWidget(m_bucket, 1);
    row->addWidget(m_addBucket);
    return row;
}

bool BucketAdd::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == m_bucket && event->type() == QEvent::MouseButtonPress && m_bucket->isEnabled() && !m_containersLoaded
        && mayLoadContainers())
        loadContainers();
    return Storages::Add::eventFilter(watched, event);
}

bool BucketAdd::mayLoadContainers() const
{
    return true;
}

bool BucketAdd::canRequestPrefixes() const
{
    return m_containersLoaded;
}

QStringList BucketAdd::fillBuckets(const QJsonArray& data)
{
    const QStringList names = ContainerCombo::fill(m_bucket, data, &m_newContainer, &m_savedContainer);
    m_containersLoaded = true;
    return names;
}

void BucketAdd::updateBuckets(bool filled)
{
    ContainerCombo::update(m_bucket, m_addBucket, okButton(), filled, m_containersLoaded, &m_savedContainer);
}

void BucketAdd::resetBuckets()
{
    m_containersLoaded = false;
    ContainerCombo::reset(m_bucket, m_addBucket, okButton());
}

void BucketAdd::lockWidgetsAfterError(bool locked)
{
    Storages::Add::lockWidgetsAfterError(locked);
    m_addBucket->setEnabled(!locked && m_containersLoaded);
}

void BucketAdd::lockWidgetsAfterSslOperation(bool locked)
{
    Storages::Add::lockWidgetsAfterSslOperation(locked);
    m_bucket->setEnabled(true);
}

} // namespace NVB::GUI::Settings::Account
