#pragma once

#include <QDialog>
#include <QString>

class QKeyEvent;
class QLabel;

namespace NVB::Common::Communication::V2 {
class Command;
}

namespace NVB::GUI {

class ProgressWheel;

// Holds the user while one V2 command runs: a turning wheel and a message,
// nothing to click. The subclass's result slot reads the command and ends
// the dialog with accept() or reject().
class WaitCommandExecDialog : public QDialog
{
    Q_OBJECT
public:
    explicit WaitCommandExecDialog(const QString& title, QWidget* parent = nullptr);

    QString message() const;
    ProgressWheel* progressWheel() const { return m_wheel; }

public slots:
    int exec() override;
    void execCommand(NVB::Common::Communication::V2::Command* command);

signals:
    void setMessage(const QString& text);
    void startWait();
    void stopWait();

protected:
    void keyPressEvent(QKeyEvent* event) override;

private slots:
    virtual void onCommandResult() = 0;

private:
    ProgressWheel* m_wheel;
    QLabel* m_message;
};

} // namespace NVB::GUI
