#include "settings/sectionline.h"

#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>

namespace NVB::GUI::Settings {

SectionLine::SectionLine(const QString& text, QWidget* parent)
    : QWidget(parent)
{
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 6, 0, 0);
    auto* label = new QLabel(QStringLiteral("<b>%1</b>").arg(text.toHtmlEscaped()), this);
    auto* line = new QFrame(this);
    line->setFrameShape(QFrame::HLine);
    line->setFrameShadow(QFrame::Sunken);
    layout->addWidget(label);
    layout->addWidget(line, 1);
}

} // namespace NVB::GUI::Settings
