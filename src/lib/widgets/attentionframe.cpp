#include "widgets/attentionframe.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QStyle>

namespace NVB::GUI {

AttentionFrame::AttentionFrame(const QString& text, Kind kind, QWidget* parent)
    : QFrame(parent)
    , m_icon(new QLabel(this))
    , m_text(new QLabel(text, this))
{
    setFrameShape(QFrame::StyledPanel);
    setAutoFillBackground(true);
    m_text->setWordWrap(true);
    m_text->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_icon->setAlignment(Qt::AlignTop);
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(8, 6, 8, 6);
    layout->setSpacing(8);
    layout->addWidget(m_icon);
    layout->addWidget(m_text, 1);
    setKind(kind);
}

QString AttentionFrame::text() const
{
    return m_text->text();
}

void AttentionFrame::setText(const QString& text)
{
    m_text->setText(text);
}

void AttentionFrame::setKind(Kind kind)
{
    m_kind = kind;
    QStyle::StandardPixmap icon = QStyle::SP_MessageBoxWarning;
    QColor background(0xff, 0xf4, 0xce);
    if (kind == Information) {
        icon = QStyle::SP_MessageBoxInformation;
        background = QColor(0xe3, 0xef, 0xfb);
    } else if (kind == Error) {
        icon = QStyle::SP_MessageBoxCritical;
        background = QColor(0xfd, 0xe2, 0xe1);
    }
    const int side = style()->pixelMetric(QStyle::PM_SmallIconSize, nullptr, this);
    m_icon->setPixmap(style()->standardIcon(icon, nullptr, this).pixmap(side, side));
    QPalette colours = palette();
    colours.setColor(QPalette::Window, background);
    // The light background stays light whatever the theme; the text must too.
    colours.setColor(QPalette::WindowText, Qt::black);
    setPalette(colours);
}

} // namespace NVB::GUI
