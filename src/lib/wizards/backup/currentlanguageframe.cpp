#include "wizards/backup/currentlanguageframe.h"

#include <QEvent>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QInputMethod>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>

namespace NVB::GUI {

CurrentLanguageFrame::CurrentLanguageFrame()
    : QFrame(nullptr, Qt::ToolTip | Qt::FramelessWindowHint)
    , m_label(new QLabel(this))
{
    setFrameShape(QFrame::Box);
    setAttribute(Qt::WA_ShowWithoutActivating);
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(6, 2, 6, 2);
    layout->addWidget(m_label);
    if (QInputMethod* input = QGuiApplication::inputMethod())
        connect(input, &QInputMethod::localeChanged, this, &CurrentLanguageFrame::updateLanguage);
    updateLanguage();
}

QString CurrentLanguageFrame::languageText(const QLocale& locale)
{
    const QString name = locale.name();
    const QString language = name.section(QLatin1Char('_'), 0, 0).toUpper();
    return tr("Current language: %1")
        .arg(language.isEmpty() || language == QLatin1String("C") ? QStringLiteral("EN") : language);
}

QString CurrentLanguageFrame::text() const
{
    return m_label->text();
}

void CurrentLanguageFrame::updateLanguage()
{
    const QInputMethod* input = QGuiApplication::inputMethod();
    m_label->setText(languageText(input ? input->locale() : QLocale()));
    adjustSize();
}

void CurrentLanguageFrame::watch(QLineEdit* field)
{
    if (field)
        field->installEventFilter(this);
}

bool CurrentLanguageFrame::eventFilter(QObject* watched, QEvent* event)
{
    auto* field = qobject_cast<QLineEdit*>(watched);
    if (!field)
        return QFrame::eventFilter(watched, event);
    switch (event->type()) {
    case QEvent::FocusIn:
        showBelow(field);
        break;
    case QEvent::FocusOut:
    case QEvent::Hide:
        if (field == m_current)
            hide();
        break;
    case QEvent::Move:
    case QEvent::Resize:
        if (field == m_current && isVisible())
            showBelow(field);
        break;
    default:
        break;
    }
    return QFrame::eventFilter(watched, event);
}

void CurrentLanguageFrame::showBelow(QLineEdit* field)
{
    m_current = field;
    updateLanguage();
    move(field->mapToGlobal(QPoint(0, field->height() + 2)));
    show();
}

} // namespace NVB::GUI
