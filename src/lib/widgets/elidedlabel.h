#pragma once

#include <QFrame>
#include <QString>

namespace NVB::GUI {

// A one-line label that shortens its text with an ellipsis rather than
// widening its dialog; the whole text is in the tool tip while it is cut.
class ElidedLabel : public QFrame
{
    Q_OBJECT
    Q_PROPERTY(QString text READ text WRITE setText NOTIFY textChanged)
public:
    explicit ElidedLabel(QWidget* parent = nullptr);
    explicit ElidedLabel(const QString& text, QWidget* parent = nullptr);

    QString text() const { return m_text; }
    Qt::TextElideMode elideMode() const { return m_mode; }
    void setElideMode(Qt::TextElideMode mode);
    // The text as it is drawn at the label's current width.
    QString elidedText() const;
    bool isElided() const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

public slots:
    void setText(const QString& text);

signals:
    void textChanged(const QString& text);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void updateToolTip();

    QString m_text;
    Qt::TextElideMode m_mode = Qt::ElideRight;
};

} // namespace NVB::GUI
