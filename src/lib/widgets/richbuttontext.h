#pragma once

#include <QRect>
#include <QStyle>
#include <QScopedPointer>
#include <QSize>
#include <QString>

class QAbstractButton;
class QStyleOptionButton;
class QFont;
class QPainter;
class QTextDocument;

namespace NVB::GUI {

// The rich text beside the indicator of CheckBox and RadioButton: a heading
// with a small note below it wraps to the width the layout gives, so the
// buttons measure and paint it through one document.
class RichButtonText
{
public:
    // Widest a text is laid out when nobody asks for a width; a longer one
    // wraps rather than widening a wizard page.
    static constexpr int PreferredWidth = 460;

    RichButtonText();
    ~RichButtonText();

    void setHtml(const QString& html);
    QString html() const { return m_html; }
    QString plainText() const;
    void setFont(const QFont& font);

    // The text's natural width, no wider than PreferredWidth.
    int preferredWidth() const;
    int heightForWidth(int width) const;
    // The height of the first line, to which the indicator is aligned.
    int firstLineHeight() const;

    void paint(QPainter* painter, const QRect& rect, const QAbstractButton* button) const;

    // The indicator a button draws before the text: its style metrics and
    // primitive, which is all that tells a check box from a radio button.
    struct Indicator
    {
        QStyle::PixelMetric width;
        QStyle::PixelMetric height;
        QStyle::PixelMetric spacing;
        QStyle::PrimitiveElement element;
    };

    // The geometry and painting of a whole button: indicator, then text.
    QSize buttonSize(const QAbstractButton* button, const Indicator& indicator, int textWidth) const;
    int buttonHeightForWidth(const QAbstractButton* button, const Indicator& indicator, int width) const;
    void paintButton(QAbstractButton* button, QStyleOptionButton option, const Indicator& indicator) const;

private:
    QString m_html;
    QScopedPointer<QTextDocument> m_document;
};

} // namespace NVB::GUI
