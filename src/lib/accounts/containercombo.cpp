#include "containercombo.h"

#include <QComboBox>
#include <QJsonObject>
#include <QSignalBlocker>

namespace NVB::GUI::Settings::Account {

QStringList ContainerCombo::fill(
    QComboBox* combo, const QJsonArray& data, QString* newContainer, QString* savedContainer)
{
    QStringList names;
    for (const QJsonValue& value : data)
        names.append(value.toObject().value(QStringLiteral("Name")).toString());
    {
        const QSignalBlocker block(combo);
        combo->clear();
        combo->addItems(names);
    }
    if (!newContainer->isEmpty() && !names.isEmpty()) {
        *savedContainer = *newContainer;
        newContainer->clear();
    }
    return names;
}

void ContainerCombo::selectSaved(QComboBox* combo, QString* savedContainer)
{
    if (savedContainer->isEmpty() || combo->count() == 0)
        return;
    // Exactly first: a server may list "Data" and "data" side by side; the
    // case-blind match finds a name the server lists in another case.
    int found = combo->findText(*savedContainer, Qt::MatchExactly | Qt::MatchCaseSensitive);
    if (found < 0)
        found = combo->findText(*savedContainer, Qt::MatchFixedString);
    savedContainer->clear();
    const QSignalBlocker block(combo);
    combo->setCurrentIndex(found < 0 ? 0 : found);
}

void ContainerCombo::update(
    QComboBox* combo, QWidget* addButton, QWidget* okButton, bool filled, bool loaded, QString* savedContainer)
{
    combo->setEnabled(filled);
    if (!filled) {
        okButton->setEnabled(false);
        return;
    }
    selectSaved(combo, savedContainer);
    addButton->setEnabled(loaded);
    okButton->setEnabled(loaded && combo->currentIndex() >= 0);
}

void ContainerCombo::reset(QComboBox* combo, QWidget* addButton, QWidget* okButton)
{
    {
        const QSignalBlocker block(combo);
        combo->clear();
    }
    addButton->setEnabled(false);
    okButton->setEnabled(false);
}

} // namespace NVB::GUI::Settings::Account
