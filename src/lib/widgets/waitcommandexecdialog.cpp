#include "widgets/waitcommandexecdialog.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>

#include "service/v2/command.h"
#include "widgets/progresswheel.h"

namespace NVB::GUI {

using NVB::Common::Communication::V2::Command;

WaitCommandExecDialog::WaitCommandExecDialog(const QString& title, QWidget* parent)
    : QDialog(parent,
        Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowSystemMenuHint
            | Qt::WindowMinMaxButtonsHint)
    , m_wheel(new ProgressWheel(this))
    , m_message(new QLabel(this))
{
    setWindowTitle(title);
    m_message->setWordWrap(true);
    m_message->setMinimumWidth(260);
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(15, 15, 15, 15);
    layout->setSpacing(9);
    layout->addWidget(m_wheel, 0, Qt::AlignTop);
    layout->addWidget(m_message, 1);
    connect(this, &WaitCommandExecDialog::setMessage, m_message, &QLabel::setText);
    connect(this, &WaitCommandExecDialog::startWait, m_wheel, &ProgressWheel::startAnimate);
    connect(this, &WaitCommandExecDialog::stopWait, m_wheel, &ProgressWheel::stopAnimate);
}

QString WaitCommandExecDialog::message() const
{
    return m_message->text();
}

int WaitCommandExecDialog::exec()
{
    m_wheel->startAnimate();
    return QDialog::exec();
}

void WaitCommandExecDialog::execCommand(Command* command)
{
    if (!command)
        return;
    connect(command, &Command::complite, this, &WaitCommandExecDialog::onCommandResult);
    connect(command, &Command::error, this, &WaitCommandExecDialog::onCommandResult);
    connect(command, &Command::timeout, this, &WaitCommandExecDialog::onCommandResult);
    command->exec();
}

void WaitCommandExecDialog::keyPressEvent(QKeyEvent* event)
{
    // A running command can't be taken back; Escape would only hide it.
    if (event->key() == Qt::Key_Escape) {
        event->accept();
        return;
    }
    QDialog::keyPressEvent(event);
}

} // namespace NVB::GUI
