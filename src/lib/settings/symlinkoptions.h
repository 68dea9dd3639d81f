#pragma once

#include <QList>
#include <QWidget>

class QButtonGroup;
class QRadioButton;

namespace NVB::GUI::Settings {

// How a backup treats symbolic links; the chosen button's index is what the
// engine reads from "BackupSymlink".
class SymlinkOptions : public QWidget
{
    Q_OBJECT
public:
    explicit SymlinkOptions(QWidget* parent = nullptr);

    QList<QRadioButton*> buttons() const { return m_buttons; }

public slots:
    void loadSettings();

private:
    void onToggled(int index, bool checked);

    QButtonGroup* m_group;
    QList<QRadioButton*> m_buttons;
};

} // namespace NVB::GUI::Settings
