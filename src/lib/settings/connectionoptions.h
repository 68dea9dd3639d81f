#pragma once

#include <QWidget>

class QSpinBox;

namespace NVB::GUI::Settings {

// How often and how far apart the engine retries a failed transfer.
class ConnectionOptions : public QWidget
{
    Q_OBJECT
public:
    explicit ConnectionOptions(QWidget* parent = nullptr);

    QSpinBox* attemptsBox() const { return m_attempts; }
    QSpinBox* intervalBox() const { return m_interval; }

public slots:
    void loadSettings();

private:
    QSpinBox* m_attempts;
    QSpinBox* m_interval;
};

} // namespace NVB::GUI::Settings
