#pragma once

#include <QCheckBox>

#include "widgets/richbuttontext.h"

namespace NVB::GUI {

// A check box whose text is rich: a bold heading and a small note below it,
// wrapped to the page's width. It is a real QCheckBox, so wizard fields,
// button groups and tristate work as usual.
class CheckBox : public QCheckBox
{
    Q_OBJECT
public:
    explicit CheckBox(QWidget* parent = nullptr);
    explicit CheckBox(const QString& html, QWidget* parent = nullptr);

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
