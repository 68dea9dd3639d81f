#pragma once

#include <QWidget>

class QCheckBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QVBoxLayout;

namespace NVB::GUI {

// One command line run around a backup: a check box, the line with the
// program in quotes, a file chooser, and a red warning about the program.
// Warnings inform; they never block the page.
class ActionWidget : public QWidget
{
    Q_OBJECT
public:
    explicit ActionWidget(const QString& title, QWidget* parent = nullptr);

    bool isActionEnabled() const;
    void setActionEnabled(bool enabled);
    QString program() const;
    void setProgram(const QString& program);
    void setWarningMessage(const QString& message);
    QString warningMessage() const { return m_warningText; }

    // Checks a command line and shows what is wrong with it; true when
    // nothing is.
    bool checkFilePermissions(const QString& command);

    QCheckBox* enableBox() const { return m_enable; }
    QLineEdit* programEdit() const { return m_program; }
    QPushButton* browseButton() const { return m_browse; }

signals:
    void changed();

public slots:
    void onTextChanged();

protected:
    // Where subclasses put their own controls, below the command line.
    QVBoxLayout* m_layout;

private slots:
    void onBrowse();

private:
    QCheckBox* m_enable;
    QLineEdit* m_program;
    QPushButton* m_browse;
    QLabel* m_warning;
    QString m_warningText;
};

} // namespace NVB::GUI
