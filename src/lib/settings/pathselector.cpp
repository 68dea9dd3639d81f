#include "settings/pathselector.h"

#include <QComboBox>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QSignalBlocker>

namespace NVB::GUI::Settings {

namespace {

// The item after "Default": "Other...", or a separator and the custom folder.
constexpr int DefaultIndex = 0;

} // namespace

PathSelector::PathSelector(QWidget* parent)
    : QWidget(parent)
    , m_combo(new QComboBox(this))
{
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_combo);
    m_combo->addItem(tr("Default"));
    m_combo->addItem(tr("Other..."));
    connect(m_combo, qOverload<int>(&QComboBox::activated), this, &PathSelector::onActivated);
}

void PathSelector::setDefaultPath(const QString& path)
{
    m_defaultPath = path;
}

void PathSelector::selectDefaultPath()
{
    const QSignalBlocker blocker(m_combo);
    m_combo->setCurrentIndex(DefaultIndex);
    m_lastIndex = DefaultIndex;
}

bool PathSelector::isCustomPathSetted() const
{
    return m_combo->count() > 2;
}

int PathSelector::otherIndex() const
{
    return m_combo->count() - 1;
}

QString PathSelector::currentPath() const
{
    return m_combo->currentIndex() == DefaultIndex || !isCustomPathSetted() ? m_defaultPath : m_customPath;
}

void PathSelector::setCurrentPath(const QString& path)
{
    if (path.isEmpty())
        return;
    if (QDir::cleanPath(path) == QDir::cleanPath(m_defaultPath)) {
        selectDefaultPath();
        return;
    }
    const QSignalBlocker blocker(m_combo);
    if (path != m_customPath || !isCustomPathSetted()) {
        if (isCustomPathSetted()) {
            // The separator and the old folder go; "Other..." stays last.
            m_combo->removeItem(2);
            m_combo->removeItem(1);
        }
        m_customPath = path;
        m_combo->insertSeparator(1);
        m_combo->insertItem(2, QFileInfo(path).fileName().isEmpty() ? path : QFileInfo(path).fileName());
        m_combo->setItemData(2, path, Qt::ToolTipRole);
    }
    m_combo->setCurrentIndex(2);
    m_lastIndex = 2;
}

void PathSelector::onActivated(int index)
{
    if (index == otherIndex()) {
        const QString start = isCustomPathSetted() ? m_customPath : m_defaultPath;
        const QString folder = QFileDialog::getExistingDirectory(this, tr("Choose logs location"), start);
        if (folder.isEmpty()) {
            const QSignalBlocker blocker(m_combo);
            m_combo->setCurrentIndex(m_lastIndex);
            return;
        }
        setCurrentPath(folder);
    } else {
        m_lastIndex = index;
    }
    emit currentPathChanged(currentPath());
}

} // namespace NVB::GUI::Settings
