#pragma once

#include <QDialog>

class QDialogButtonBox;
class QHBoxLayout;
class QLayout;
class QVBoxLayout;

namespace NVB::GUI {

class ProgressWheel;

// A dialog whose content sits in a central layout above a row that holds a
// wheel at the left and the buttons at the right. During a long action the
// whole dialog locks itself and the wheel turns.
class ProcessDialog : public QDialog
{
    Q_OBJECT
public:
    explicit ProcessDialog(QWidget* parent = nullptr, Qt::WindowFlags flags = Qt::WindowFlags());

    // The dialog takes the layout; a second call replaces the first.
    void setCentralLayout(QLayout* layout);
    QLayout* centralLayout() const { return m_centralLayout; }
    void addDialogButtons(QDialogButtonBox* buttons);
    ProgressWheel* progressWheel() const { return m_wheel; }

public slots:
    void showWaitProcess(bool on);
    void startWaitProcess(bool on);

private:
    QVBoxLayout* m_layout;
    QHBoxLayout* m_bottomLayout;
    ProgressWheel* m_wheel;
    QLayout* m_centralLayout = nullptr;
};

} // namespace NVB::GUI
