#pragma once

#include <QDialog>

class QVBoxLayout;

namespace NVB::GUI {

// Shows one settings page by itself, outside the settings dialog. The page
// writes through as usual; the dialog only has Close.
class SettingSimpleDialog : public QDialog
{
    Q_OBJECT
public:
    explicit SettingSimpleDialog(QWidget* parent = nullptr);

    // Takes the widget's window title and puts it above the buttons. A null
    // widget changes nothing.
    void setWidget(QWidget* widget);

private:
    QVBoxLayout* m_layout;
};

} // namespace NVB::GUI
