#include "wizards/backup/pagesource.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QMessageBox>
#include <QTreeView>
#include <QVBoxLayout>
#include <QWizard>

#include "app/delegates/incompletestatedelegate.h"
#include "core/licenserestrictions.h"
#include "models/filesystemcheckedmodel.h"
#include "models/filesystemcheckedproxymodel.h"
#include "models/filesystemcheckedsharecontrolmodel.h"
#include "records/plan/backupfile.h"
#include "wizards/common/pagecheckboxlegenddialog.h"

namespace NVB::GUI {

namespace {

// A licence that limits network shares gets the tree that counts them.
FileSystemCheckedModel* makeModel(QObject* parent)
{
    using NVB::License::LicenseRestrictions;
    if (!LicenseRestrictions::isNetworkSharesLimited())
        return new FileSystemCheckedModel(parent);
    auto* model = new FileSystemCheckedShareControlModel(parent);
    model->setShareLimit(LicenseRestrictions::networkShareLimit());
    return model;
}

} // namespace

BackupPlanEditWizard::PageSource::PageSource(QWidget* parent)
    : PlanWizardBase::PageSource(tr("Backup source"), parent)
    , m_showHidden(new QCheckBox(tr("Show hidden files and folders"), this))
    , m_legend(new QLabel(QStringLiteral("<a href=#><span>%1</span></a>").arg(tr("Legend")), this))
    , m_delegate(new IncompleteStateDelegate(this))
    , m_model(makeModel(this))
    , m_proxy(new FileSystemCheckedProxyModel(this))
{
    setSubTitle(tr("Specify files and folders you want to backup"));
    view()->setItemDelegate(m_delegate);

    auto* bottom = new QHBoxLayout();
    bottom->addWidget(m_showHidden);
    bottom->addStretch(1);
    bottom->addWidget(m_legend);
    pageLayout()->addLayout(bottom);

    m_legend->setTextInteractionFlags(Qt::LinksAccessibleByMouse | Qt::LinksAccessibleByKeyboard);
    connect(m_legend, &QLabel::linkActivated, this, &PageSource::onShowLegend);
    // Nothing to explain in a tree without a single volume.
    m_legend->setVisible(m_model->rowCount() >= 1);

    m_proxy->setSourceModel(m_model);
    setModel(m_proxy, 0);
    // Marks of a loaded plan land with the listing of their folders, as new
    // rows rather than changed ones.
    connect(m_model, &QAbstractItemModel::rowsInserted, this, &PageSource::completeChanged);
    connect(m_model, &QAbstractItemModel::modelReset, this, &PageSource::completeChanged);
    connect(m_showHidden, &QCheckBox::clicked, m_proxy, &FileSystemCheckedProxyModel::setIsShowHidden);
    if (auto* shares = qobject_cast<FileSystemCheckedShareControlModel*>(m_model))
        connect(shares, &FileSystemCheckedShareControlModel::shareControlAttention, this,
            &PageSource::onShareControlAttention);
}

bool BackupPlanEditWizard::PageSource::validatePage()
{
    return isComplete();
}

bool BackupPlanEditWizard::PageSource::isComplete() const
{
    return m_model && !m_model->includePath(false).isEmpty();
}

int BackupPlanEditWizard::PageSource::nextId() const
{
    return PageAdvancedFilterId;
}

QString BackupPlanEditWizard::PageSource::summary()
{
    QString rows = headingRow(tr("Backup source:"));
    rows += detailRow(tr("Include:"));
    for (const QString& path : m_model->includePath(false))
        rows += detailRow(path.toHtmlEscaped());
    // The exclusion heading stands even over an empty list, so that the user
    // sees that nothing is left out.
    rows += detailRow(tr("Exclude:"));
    for (const QString& path : m_model->excludePath(false))
        rows += detailRow(path.toHtmlEscaped());
    return rows;
}

bool BackupPlanEditWizard::PageSource::initPlan(NVB::Info::Plan::Base* plan)
{
    auto* file = dynamic_cast<NVB::Info::Plan::BackupFile*>(plan);
    if (!file)
        return false;
    file->setItems(m_model->includePath(false));
    file->setExcludeItems(m_model->excludePath(false));
    return true;
}

bool BackupPlanEditWizard::PageSource::fromPlan(NVB::Info::Plan::Base* plan)
{
    auto* file = dynamic_cast<NVB::Info::Plan::BackupFile*>(plan);
    if (!file)
        return false;
    // The plan's own shares don't count against the licence's limit.
    if (auto* shares = qobject_cast<FileSystemCheckedShareControlModel*>(m_model))
        shares->initChecked(file->id(), file->items(), file->excludeItems());
    else
        m_model->initChecked(file->items(), file->excludeItems());
    emit completeChanged();
    return true;
}

void BackupPlanEditWizard::PageSource::onShowLegend()
{
    PageCheckBoxLegendDialog legend(this);
    for (int state : {2, 0, 1, IncompleteStateDelegate::IncompleteState})
        legend.setPixmapLegend(state, m_delegate->stateImage(state, view()));
    legend.exec();
}

void BackupPlanEditWizard::PageSource::onShareControlAttention()
{
    QMessageBox::information(this, wizard() ? wizard()->windowTitle() : QString(),
        tr("Allow to backup only 1 network share in all backup plans"), QMessageBox::Ok);
}

} // namespace NVB::GUI
