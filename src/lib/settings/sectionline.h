#pragma once

#include <QWidget>

namespace NVB::GUI::Settings {

// A bold heading followed by a rule, separating the groups of a settings tab.
class SectionLine : public QWidget
{
    Q_OBJECT
public:
    explicit SectionLine(const QString& text, QWidget* parent = nullptr);
};

} // namespace NVB::GUI::Settings
