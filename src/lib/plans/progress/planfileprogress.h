#pragma once

#include <QMap>

#include "planprogressbase.h"

class QLabel;
class QProgressBar;

namespace NVB::GUI {

// The progress of a file plan: status, current file, counts, size, speed,
// elapsed time, time left and a bar (busy while the total is unknown).
class PlanFileProgress : public PlanProgressBase
{
    Q_OBJECT

public:
    // The entry of the label that carries the size's tooltip.
    static constexpr char ToolTip[] = "ToolTip";

    explicit PlanFileProgress(QWidget* parent = nullptr);

    void setDefault() override;
    void setCurrent(int subType) override;

    QLabel* label(const QString& key) const { return m_labels.value(key); }
    QProgressBar* progressBar() const { return m_bar; }

public slots:
    void onUpdated(const QMap<QString, QVariant>& message) override;

private:
    QMap<QString, QLabel*> m_labels;
    QProgressBar* m_bar;
};

} // namespace NVB::GUI
