#pragma once

#include <QList>
#include <QScrollArea>

class QVBoxLayout;

namespace NVB::GUI::Settings::Account {

// The provider tiles from which a user picks the kind of account to add.
class Select : public QScrollArea
{
    Q_OBJECT

public:
    class Item;

    explicit Select(QWidget* parent = nullptr);
    ~Select() override;

    QList<Item*> items() const { return m_items; }
    Item* item(int type) const;

signals:
    void accountSelected(int type);

protected:
    // Adds a tile; a disabled one shows why in its tool tip.
    Item* addItem(int type, const QString& name, bool enabled = true, const QString& toolTip = QString());

private:
    QVBoxLayout* m_tiles;
    QList<Item*> m_items;
};

} // namespace NVB::GUI::Settings::Account
