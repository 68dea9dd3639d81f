#pragma once

#include <QBasicTimer>
#include <QWidget>

namespace NVB::GUI {

// The spinning wheel that tells the user a long action is under way. Hidden
// space is kept while it stands still, so layouts don't jump.
class ProgressWheel : public QWidget
{
    Q_OBJECT
public:
    explicit ProgressWheel(QWidget* parent = nullptr);

    bool isAnimated() const { return m_timer.isActive(); }
    QSize sizeHint() const override;

public slots:
    void startAnimate();
    void stopAnimate();
    void animate(bool on);

protected:
    void paintEvent(QPaintEvent* event) override;
    void timerEvent(QTimerEvent* event) override;

private:
    QBasicTimer m_timer;
    int m_angle = 0;
};

} // namespace NVB::GUI
