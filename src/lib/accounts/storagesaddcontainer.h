#pragma once

#include <QDialog>

#include "storages.h"

class QDialogButtonBox;
class QFormLayout;
class QLabel;
class QLineEdit;

namespace NVB::GUI::Settings {

// "Add New Container": the name of a container to create. Providers add
// their validator, rows and the check against existing names.
class Storages::AddContainer : public QDialog
{
    Q_OBJECT

public:
    explicit AddContainer(QWidget* parent = nullptr);
    ~AddContainer() override;

    QString name() const;
    void setNote(const QString& text);

    QLineEdit* nameEdit() const { return m_name; }
    QLabel* noteLabel() const { return m_note; }
    QFormLayout* form() const { return m_form; }
    QDialogButtonBox* buttonBox() const { return m_buttons; }

protected slots:
    virtual void onDataChanged();
    virtual void onAccept();

private:
    QFormLayout* m_form;
    QLineEdit* m_name;
    QLabel* m_note;
    QDialogButtonBox* m_buttons;
};

} // namespace NVB::GUI::Settings
