#pragma once

#include <QFrame>

#include "select.h"

class QLabel;

namespace NVB::GUI::Settings::Account {

// One provider tile: its icon and name. A click says which type it stands for.
class Select::Item : public QFrame
{
    Q_OBJECT

public:
    Item(int type, const QString& name, QWidget* parent = nullptr);

    int type() const { return m_type; }
    QString name() const;

signals:
    void changed(int type);

protected:
    void enterEvent(QEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void setHighlighted(bool on);

    int m_type;
    QLabel* m_name;
};

} // namespace NVB::GUI::Settings::Account
