#include "wizards/backup/actionwidget.h"

#include <QCheckBox>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "app/getprogrampath.h"

namespace NVB::GUI {

ActionWidget::ActionWidget(const QString& title, QWidget* parent)
    : QWidget(parent)
    , m_layout(new QVBoxLayout(this))
    , m_enable(new QCheckBox(title, this))
    , m_program(new QLineEdit(this))
    , m_browse(new QPushButton(QStringLiteral("..."), this))
    , m_warning(new QLabel(this))
{
    m_layout->setContentsMargins(0, 0, 0, 0);
    m_program->setPlaceholderText(QStringLiteral("\"/path/to/file\" arg1 arg2"));
    m_program->setEnabled(false);
    m_browse->setEnabled(false);
    m_warning->setWordWrap(true);
    auto* row = new QHBoxLayout();
    row->addWidget(m_program, 1);
    row->addWidget(m_browse);
    m_layout->addWidget(m_enable);
    m_layout->addLayout(row);
    m_layout->addWidget(m_warning);

    connect(m_enable, &QCheckBox::toggled, m_program, &QWidget::setEnabled);
    connect(m_enable, &QCheckBox::toggled, m_browse, &QWidget::setEnabled);
    connect(m_enable, &QCheckBox::toggled, this, [this](bool on) {
        if (on)
            checkFilePermissions(m_program->text());
        emit changed();
    });
    connect(m_program, &QLineEdit::textChanged, this, &ActionWidget::onTextChanged);
    connect(m_browse, &QPushButton::clicked, this, &ActionWidget::onBrowse);
}

bool ActionWidget::isActionEnabled() const
{
    return m_enable->isChecked();
}

void ActionWidget::setActionEnabled(bool enabled)
{
    m_enable->setChecked(enabled);
}

QString ActionWidget::program() const
{
    return m_program->text();
}

void ActionWidget::setProgram(const QString& program)
{
    m_program->setText(program);
}

void ActionWidget::setWarningMessage(const QString& message)
{
    m_warningText = message;
    m_warning->setText(
        message.isEmpty() ? QString() : QStringLiteral("<font size='2' color='red'>%1</font>").arg(message));
}

bool ActionWidget::checkFilePermissions(const QString& command)
{
    setWarningMessage(QString());
    if (command.isEmpty())
        return true;
    if (!command.startsWith(QLatin1Char('"'))) {
        setWarningMessage(tr("The path must be enclosed in \"quotes\""));
        return false;
    }
    const QFileInfo file(getProgramPath(command));
    if (!file.exists()) {
        setWarningMessage(tr("The file does not exist"));
        return false;
    }
    if (!file.permission(QFile::ExeUser)) {
        setWarningMessage(tr("The file does not have execute permission"));
        return false;
    }
    return true;
}

void ActionWidget::onTextChanged()
{
    checkFilePermissions(m_program->text());
    emit changed();
}

void ActionWidget::onBrowse()
{
    QString folder = QDir::homePath();
    QString text = m_program->text();
    if (!text.isEmpty()) {
        if (text.startsWith(QLatin1Char('"')))
            text.remove(0, 1);
        if (text.endsWith(QLatin1Char('"')))
            text.chop(1);
        const QFileInfo current(getProgramPath(text));
        if (current.exists())
            folder = current.absolutePath();
    }
    const QString chosen = QFileDialog::getOpenFileName(this, tr("Select file"), folder);
    if (chosen.isEmpty())
        return;
    checkFilePermissions(QStringLiteral("\"%1\"").arg(chosen));
    m_program->setText(QStringLiteral("\"%1\"").arg(chosen));
}

} // namespace NVB::GUI
