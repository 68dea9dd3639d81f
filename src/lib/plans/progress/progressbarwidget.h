#pragma once

#include <QWidget>

namespace NVB::GUI {

// One bar with two values: how much was read (the lighter, longer fill) and
// how much was sent (the darker fill over it), as a disk image run reads
// ahead of its upload.
class ProgressBarWidget : public QWidget
{
    Q_OBJECT

public:
    explicit ProgressBarWidget(QWidget* parent = nullptr);

    void setRange(int minimum, int maximum);
    int minimum() const { return m_minimum; }
    int maximum() const { return m_maximum; }
    int valueFirst() const { return m_first; }
    int valueSecond() const { return m_second; }
    // "Read: 40% Sent: 20%", also the tooltip.
    QString text() const;

    QSize sizeHint() const override;

public slots:
    void setValueFirst(int value);
    void setValueSecond(int value);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    int percentOf(int value) const;

    int m_minimum = 0;
    int m_maximum = 100;
    int m_first = 0;
    int m_second = 0;
};

} // namespace NVB::GUI
