#pragma once

#include <QPointer>
#include <QWizard>

class QLabel;

namespace NVB::GUI {

// The frame of every wizard of the console. QWizard sizes the label that
// shows its side pixmap by the pixmap's pixels; on a high-density screen that
// doubles the side. The label is found once and held at the pixmap's size in
// device-independent pixels.
class BaseWizard : public QWizard
{
    Q_OBJECT
public:
    explicit BaseWizard(QWidget* parent = nullptr, Qt::WindowFlags flags = Qt::WindowFlags());

protected:
    void paintEvent(QPaintEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    void fixPixmapSize();

    QPointer<QLabel> m_pixmapLabel;
};

} // namespace NVB::GUI
