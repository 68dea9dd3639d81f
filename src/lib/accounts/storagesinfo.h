#pragma once

#include <QList>
#include <QPersistentModelIndex>
#include <QWidget>

#include "cloud/cloudtype.h"
#include "storages.h"

class QFormLayout;
class QLabel;

namespace NVB::GUI {
class ElidedLabel;
}

namespace NVB::GUI::Settings {

// The read-only view of one saved account: the provider's icon and name, the
// account's name, and the fields of its record that the provider shows.
class Storages::Info : public QWidget
{
    Q_OBJECT

public:
    using Formatter = QString (*)(const QVariant&);

    explicit Info(NVL::Cloud::Type type, QWidget* parent = nullptr);
    ~Info() override;

    NVL::Cloud::Type type() const { return m_type; }
    void setItem(const QModelIndex& index);
    QString title() const;
    // The text shown for a record key; empty when the field is hidden.
    QString fieldText(const QString& key) const;
    bool isFieldVisible(const QString& key) const;

    static QString decryptDelegate(const QVariant& value);
    static QString trueFalseDelegate(const QVariant& value);

protected:
    // A row for a key of the record, under the label; a key added twice is
    // ignored.
    void addField(const QString& label, const QString& key, Formatter formatter = nullptr);
    virtual void updateItem(const QModelIndex& index);

private:
    struct Field
    {
        QString key;
        QLabel* label;
        ElidedLabel* value;
        Formatter formatter;
    };

    NVL::Cloud::Type m_type;
    QLabel* m_title = nullptr;
    QFormLayout* m_form = nullptr;
    QList<Field> m_fields;
};

} // namespace NVB::GUI::Settings
