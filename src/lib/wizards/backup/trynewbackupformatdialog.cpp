#include "wizards/backup/trynewbackupformatdialog.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace NVB::GUI {

TryNewBackupFormatDialog::TryNewBackupFormatDialog(QWidget* parent)
    : QDialog(parent)
    , m_tryNew(new QPushButton(QStringLiteral("%1 (%2)").arg(tr("Try New Backup Format"), tr("BETA")), this))
    , m_useCurrent(new QPushButton(tr("Use Current Backup Format"), this))
{
    setWindowTitle(tr("Create Backup Plan Wizard"));

    auto* heading = new QLabel(
        QStringLiteral("<h3>%1 (<font color=\"red\">%2</font>)</h3>").arg(tr("NEW BACKUP FORMAT"), tr("BETA")), this);
    auto list = [](const QStringList& items) {
        QString html = QStringLiteral("<ul style=\"margin-top: 2px;\">");
        for (const QString& item : items)
            html += QStringLiteral("<li>%1</li>").arg(item);
        return html + QStringLiteral("</ul>");
    };
    auto* text = new QLabel(this);
    text->setWordWrap(true);
    text->setText(
        QStringLiteral("<p>%1</p><p><b>%2</b></p>%3<p><b>%4</b></p>%5<p><i>%6</i></p><p>%7</p><p>%8</p>")
            .arg(tr("We are pleased to announce the new format for backup."), tr("The new backup format supports:"),
                list({tr("Client-side deduplication"), tr("Significant improvement of incremental backup speed")}),
                tr("Coming soon:"),
                list({tr("GFS backup rotation scheme"), tr("Hybrid backup"),
                    tr("Synthetic Full backup for a number of cloud storage providers")}),
                tr("in the future, this will be the only supported backup format."),
                tr("While it's in beta, you can choose how to store your backups."),
                tr("Would you like to back up with the new beta format or the current one?")));

    // A wrapped label doesn't make its dialog tall enough by itself.
    constexpr int TextWidth = 480;
    text->setFixedWidth(TextWidth);
    text->setMinimumHeight(text->heightForWidth(TextWidth));

    m_tryNew->setDefault(true);
    auto* buttons = new QHBoxLayout();
    buttons->addStretch(1);
    buttons->addWidget(m_useCurrent);
    buttons->addWidget(m_tryNew);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(20, 20, 20, 15);
    layout->addWidget(heading);
    layout->addWidget(text);
    layout->addLayout(buttons);

    connect(m_tryNew, &QPushButton::clicked, this, [this] { done(NewFormat); });
    connect(m_useCurrent, &QPushButton::clicked, this, [this] { done(CurrentFormat); });
}

} // namespace NVB::GUI
