#include "planfileprogress.h"

#include <QApplication>
#include <QFontMetrics>
#include <QGridLayout>
#include <QLabel>
#include <QProgressBar>

#include "service/notification/format.h"

namespace NVB::GUI {

namespace Keys = NVB::Common::Communication::Notification::Format::Worker::ReportProgress;

PlanFileProgress::PlanFileProgress(QWidget* parent)
    : PlanProgressBase(parent)
    , m_bar(new QProgressBar(this))
{
    auto* layout = new QGridLayout(this);
    // Caption and value side by side, one line each.
    const QList<QPair<const char*, const char*>> rows {{Keys::Status, Keys::StatusValue},
        {Keys::CurrentFile, Keys::CurrentFileValue}, {Keys::FilesCopied, Keys::FilesCopiedValue}, {nullptr, Keys::Size},
        {nullptr, Keys::Speed}, {nullptr, Keys::Elapsed}, {Keys::TimeLeft, Keys::TimeLeftValue}};
    int row = 0;
    for (const auto& [caption, value] : rows) {
        if (caption) {
            auto* label = new QLabel(this);
            m_labels.insert(QLatin1String(caption), label);
            layout->addWidget(label, row, 0);
        }
        auto* label = new QLabel(this);
        label->setObjectName(QLatin1String(value));
        label->setTextInteractionFlags(Qt::TextSelectableByMouse);
        m_labels.insert(QLatin1String(value), label);
        layout->addWidget(label, row, 1);
        ++row;
    }
    // The size carries the caption that says what the size is about.
    auto* sizeCaption = new QLabel(tr("Total files size:"), this);
    m_labels.insert(QLatin1String(ToolTip), sizeCaption);
    layout->addWidget(sizeCaption, 3, 0);
    layout->addWidget(new QLabel(tr("Speed:"), this), 4, 0);
    layout->addWidget(new QLabel(tr("Elapsed:"), this), 5, 0);
    m_labels.value(QLatin1String(Keys::CurrentFileValue))->setMinimumWidth(1);
    layout->setColumnStretch(1, 1);
    m_bar->setRange(0, 100);
    layout->addWidget(m_bar, row, 0, 1, 2);
    setDefault();
}

void PlanFileProgress::setDefault()
{
    for (auto it = m_labels.cbegin(); it != m_labels.cend(); ++it) {
        if (it.key() != QLatin1String(ToolTip))
            it.value()->setText(QString());
    }
    m_bar->setRange(0, 100);
    m_bar->setValue(0);
}

void PlanFileProgress::setCurrent(int subType)
{
    QLabel* label = m_labels.value(QLatin1String(ToolTip));
    if (subType == 1) {
        label->setToolTip(
            tr("Total files size is the size of all files in this backup. \nThe real size of the data to be uploaded "
               "may be less if you use compression. \nYou can see the final amount of data copied to backup storage "
               "when the backup finishes."));
    } else if (subType == 2) {
        label->setToolTip(
            tr("Total files size is the size of all files in this restore plan. \nThe real size of the data to be "
               "download may be more if you use compression. \nYou can see the final amount of data copied to local "
               "storage when the restore finishes."));
    }
}

void PlanFileProgress::onUpdated(const QMap<QString, QVariant>& message)
{
    const char* plain[]
        = {Keys::StatusValue, Keys::CurrentFile, Keys::Elapsed, Keys::FilesCopied, Keys::FilesCopiedValue, Keys::Size,
            Keys::Speed, Keys::Status, Keys::StatusValue, Keys::TimeLeft, Keys::TimeLeftValue};
    for (const char* key : plain)
        m_labels.value(QLatin1String(key))->setText(message.value(QLatin1String(key)).toString());

    // A long path keeps both its ends: the folder it starts in and the name.
    QLabel* file = m_labels.value(QLatin1String(Keys::CurrentFileValue));
    const QString path = message.value(QLatin1String(Keys::CurrentFileValue)).toString();
    file->setText(QFontMetrics(QApplication::font()).elidedText(path, Qt::ElideMiddle, file->contentsRect().width()));
    file->setToolTip(path);

    bool known = false;
    const int percent = message.value(QLatin1String(Keys::ProgressBar)).toInt(&known);
    if (known && percent == -1) {
        m_bar->setRange(0, 0);
    } else {
        m_bar->setRange(0, 100);
        m_bar->setValue(qBound(0, percent, 100));
    }
}

} // namespace NVB::GUI
