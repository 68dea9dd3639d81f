#include "wizards/common/pagesource.h"

#include <QAbstractItemModel>
#include <QHeaderView>
#include <QTreeView>
#include <QVBoxLayout>

namespace NVB::GUI {

namespace {
const QString VolumesPrefix = QStringLiteral("/NVB_VOLUMES/");
const QString SharesPrefix = QStringLiteral("/NVB_SHARES/");
const QString RootWord = QStringLiteral("NVB_ROOT");
} // namespace

PlanWizardBase::PageSource::PageSource(const QString& name, QWidget* parent)
    : PageBase(name, parent)
    , m_layout(new QVBoxLayout(this))
    , m_view(new QTreeView(this))
{
    m_layout->addWidget(m_view, 1);
}

void PlanWizardBase::PageSource::setModel(QAbstractItemModel* model, int column)
{
    if (QAbstractItemModel* old = m_view->model())
        disconnect(old, &QAbstractItemModel::dataChanged, this, &PageSource::completeChanged);
    m_view->setModel(model);
    m_view->setHeaderHidden(true);
    m_view->header()->setStretchLastSection(false);
    m_view->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    if (!model)
        return;
    for (int section = 0; section < model->columnCount(); ++section)
        m_view->setColumnHidden(section, section != column);
    connect(model, &QAbstractItemModel::dataChanged, this, &PageSource::completeChanged);
}

bool PlanWizardBase::PageSource::validatePage()
{
    return true;
}

bool PlanWizardBase::PageSource::isComplete() const
{
    return true;
}

QString PlanWizardBase::PageSource::trimmeredPath(const QString& path) const
{
    if (path.startsWith(VolumesPrefix))
        return path.mid(VolumesPrefix.size());
    if (path.startsWith(SharesPrefix))
        return path.mid(SharesPrefix.size());
    if (path.contains(RootWord)) {
        if (path == RootWord)
            return QStringLiteral("/");
        return QString(path).remove(RootWord);
    }
    return path;
}

} // namespace NVB::GUI
