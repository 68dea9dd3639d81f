#pragma once

#include <QDialog>
#include <QMap>
#include <QPair>
#include <QPixmap>

class QLabel;

namespace NVB::GUI {

// Explains the four looks of a check box in a file tree. The page that opens
// it gives the pictures, drawn by the tree's own delegate, so the legend
// shows exactly what the tree shows.
class PageCheckBoxLegendDialog : public QDialog
{
    Q_OBJECT
public:
    explicit PageCheckBoxLegendDialog(QWidget* parent = nullptr);

    // Unknown states are ignored.
    void setPixmapLegend(int state, const QPixmap& pixmap);
    QPixmap pixmapLegend(int state) const;
    QString textLegend(int state) const;
    QList<int> states() const { return m_labels.keys(); }

private:
    QMap<int, QPair<QLabel*, QLabel*>> m_labels;
};

} // namespace NVB::GUI
