#pragma once

#include <QRadioButton>

#include "widgets/richbuttontext.h"

namespace NVB::GUI {

// A radio button whose text is rich, as CheckBox. It is a real QRadioButton,
// so sibling buttons stay exclusive and button groups work as usual.
class RadioButton : public QRadioButton
{
    Q_OBJECT
public:
    explicit RadioButton(QWidget* parent = nullptr);
    explicit RadioButton(const QString& html, QWidget* parent = nullptr);

    void setHtml(const QString& html);
    QString html() const { return m_text.html(); }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
    bool hasHeightForWidth() const override;
    int heightForWidth(int width) const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    bool hitButton(const QPoint& pos) const override;
    void changeEvent(QEvent* event) override;

private:
    RichButtonText m_text;
};

} // namespace NVB::GUI
