#pragma once

#include <QDialog>

#include "settings/application.h"

class QDialogButtonBox;
class QLabel;
class QLineEdit;
class QToolButton;

namespace NVB::Common::Communication {
class ICommand;
}

namespace NVB::GUI::Settings {

// Asks the engine to move its store to another folder. The engine copies
// and checks the file before it lets go of the old one, so the dialog only
// closes once the engine says the move is done.
class Application::MoveDatabase : public QDialog
{
    Q_OBJECT
public:
    explicit MoveDatabase(QWidget* parent = nullptr);

    QLineEdit* pathEdit() const { return m_path; }
    QLabel* errorLabel() const { return m_error; }
    QDialogButtonBox* buttonBox() const { return m_buttons; }

    // Puts a new folder's store path in the edit, as choosing a folder does.
    void setTargetFolder(const QString& folder);

public slots:
    void onPathEditClicked();
    void onAccept();

private slots:
    void onMoveFinished();

private:
    void showError(const QString& text);
    void setBusy(bool busy);

    QLineEdit* m_path;
    QToolButton* m_browse;
    QLabel* m_error;
    QDialogButtonBox* m_buttons;
    NVB::Common::Communication::ICommand* m_command = nullptr;
};

} // namespace NVB::GUI::Settings
