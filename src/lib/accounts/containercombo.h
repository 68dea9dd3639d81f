#pragma once

#include <QJsonArray>
#include <QStringList>

class QComboBox;
class QWidget;

namespace NVB::GUI::Settings::Account {

// The bucket or container list of the account dialogs: filled from a
// listing, then set to the stored container, or to the one just created.
class ContainerCombo
{
public:
    // Puts the listing's names into combo without signals. A container
    // created from the dialog (newContainer) becomes the one to select.
    static QStringList fill(QComboBox* combo, const QJsonArray& data, QString* newContainer, QString* savedContainer);
    // Selects savedContainer, if any and the list is in, and forgets it; the
    // first entry when the server no longer lists it.
    static void selectSaved(QComboBox* combo, QString* savedContainer);
    // The list takes a choice once the account's fields are filled; adding a
    // container and OK wait for the listing, OK also for a choice.
    static void update(QComboBox* combo, QWidget* addButton, QWidget* okButton, bool filled, bool loaded,
        QString* savedContainer);
    // Other credentials: the listing is to be made again.
    static void reset(QComboBox* combo, QWidget* addButton, QWidget* okButton);
};

} // namespace NVB::GUI::Settings::Account
