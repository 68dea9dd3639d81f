#include "wizards/backup/frequencydaily.h"

#include <QDateTime>
#include <QFrame>
#include <QGridLayout>
#include <QLabel>
#include <QRadioButton>
#include <QSpinBox>
#include <QTimeEdit>
#include <QVBoxLayout>

#include "records/plan/backup.h"

namespace NVB::GUI {

FrequencyDaily::FrequencyDaily(Type type, PlanWizardBase::PageBase* page)
    : FrequencyDaily(type, QString(), page)
{
    init(false);
}

FrequencyDaily::FrequencyDaily(Type type, const QString& prefix, PlanWizardBase::PageBase* page)
    : FrequencyBase(type, page)
    , m_layout(new QVBoxLayout(this))
    , m_prefix(prefix)
{
    m_layout->setContentsMargins(0, 0, 0, 0);
}

QString FrequencyDaily::fieldName(const QString& name) const
{
    QString result = m_prefix.isEmpty() ? name : QStringLiteral("%1_%2").arg(m_prefix, name);
    if (type() == FullPlan)
        result.prepend(QLatin1String(FullPrefix));
    return result;
}

void FrequencyDaily::addSubTitle(const QString& text)
{
    auto* row = new QHBoxLayout();
    row->addWidget(new QLabel(QStringLiteral("<small>%1</small>").arg(text), this));
    auto* line = new QFrame(this);
    line->setFrameShape(QFrame::HLine);
    line->setFrameShadow(QFrame::Sunken);
    row->addWidget(line, 1);
    m_layout->addLayout(row);
}

void FrequencyDaily::registerOn(const QString& name, QWidget* widget)
{
    if (page())
        page()->registerField(QString::fromLatin1(fieldName(name).toLatin1()), widget);
}

void FrequencyDaily::init(bool inherited)
{
    m_inherited = inherited;
    addSubTitle(tr("Daily frequency"));
    auto* grid = new QGridLayout();
    m_at = new QRadioButton(tr("At"), this);
    m_atValue = new QTimeEdit(this);
    m_atValue->setDisplayFormat(QStringLiteral("hh:mm"));
    m_atValue->setEnabled(false);
    m_every = new QRadioButton(tr("Every"), this);
    m_minutes = new QSpinBox(this);
    m_minutes->setRange(1, 1440);
    auto* fromLabel = new QLabel(tr("minute(s) from"), this);
    m_from = new QTimeEdit(this);
    m_from->setDisplayFormat(QStringLiteral("hh:mm"));
    auto* toLabel = new QLabel(tr("to"), this);
    m_to = new QTimeEdit(QTime(23, 59), this);
    m_to->setDisplayFormat(QStringLiteral("hh:mm"));
    for (QWidget* widget :
        {static_cast<QWidget*>(m_minutes), static_cast<QWidget*>(m_from), static_cast<QWidget*>(m_to)})
        widget->setEnabled(false);

    grid->addWidget(m_atValue, 0, 1);
    if (inherited) {
        // The start time belongs to the recurring schedule: shown, never edited.
        // The hidden "At" stays on so that the inherited time is what is saved.
        m_at->setChecked(true);
        m_at->setVisible(false);
        for (QWidget* widget :
            {static_cast<QWidget*>(m_every), static_cast<QWidget*>(m_minutes), static_cast<QWidget*>(fromLabel),
                static_cast<QWidget*>(m_from), static_cast<QWidget*>(toLabel), static_cast<QWidget*>(m_to)})
            widget->setVisible(false);
        if (type() == FullPlan) {
            grid->addWidget(new QLabel(tr("Start time"), this), 0, 0);
            m_atValue->setReadOnly(true);
            m_atValue->setEnabled(true);
            auto* note = new QLabel(tr("is inherited from recurring schedule settings"), this);
            note->setWordWrap(true);
            note->setMinimumWidth(250);
            grid->addWidget(note, 0, 2, 1, 4);
        } else {
            grid->addWidget(new QLabel(tr("At"), this), 0, 0);
            m_atValue->setEnabled(true);
        }
    } else {
        grid->addWidget(m_at, 0, 0);
    }
    grid->addWidget(m_every, 1, 0);
    grid->addWidget(m_minutes, 1, 1);
    grid->addWidget(fromLabel, 1, 2);
    grid->addWidget(m_from, 1, 3);
    grid->addWidget(toLabel, 1, 4);
    grid->addWidget(m_to, 1, 5);
    grid->setColumnStretch(6, 1);
    m_layout->addLayout(grid);

    if (!inherited)
        connect(m_at, &QRadioButton::toggled, m_atValue, &QWidget::setEnabled);
    connect(m_every, &QRadioButton::toggled, this, [this](bool on) {
        m_minutes->setEnabled(on);
        m_from->setEnabled(on);
        m_to->setEnabled(on);
    });
    connect(m_at, &QRadioButton::toggled, this, &FrequencyBase::changed);
    connect(m_every, &QRadioButton::toggled, this, &FrequencyBase::changed);

    registerOn(QLatin1String(FieldUsedOccursAt), m_at);
    registerOn(QLatin1String(FieldUsedOccursAtValue), m_atValue);
    registerOn(QLatin1String(FieldUsedOccursEvery), m_every);
    registerOn(QLatin1String(FieldUsedOccursEveryValue), m_minutes);
    registerOn(QLatin1String(FieldUsedOccursEveryForm), m_from);
    registerOn(QLatin1String(FieldUsedOccursEveryTo), m_to);
}

QString FrequencyDaily::dailySummary() const
{
    if (m_at->isChecked())
        return QStringLiteral("<tr><td></td><td>%1 %2</td></tr>")
            .arg(tr("Occurs every day at"), m_atValue->time().toString(Qt::TextDate));
    if (m_every->isChecked())
        return QStringLiteral("<tr><td></td><td>%1 %2 %3 %4 %5 %6</td></tr>")
            .arg(tr("Occurs every day every"), QString::number(m_minutes->value()), tr("minute(s) between"),
                m_from->time().toString(Qt::TextDate), tr("and"), m_to->time().toString(Qt::TextDate));
    return {};
}

QString FrequencyDaily::summary()
{
    return dailySummary();
}

void FrequencyDaily::assignBack(NVB::Info::Plan::Base* plan, NVB::Info::Plan::Schedule& copy) const
{
    if (type() == Plan) {
        plan->schedule() = copy;
    } else if (plan->subtype() == 1) {
        if (auto* backup = dynamic_cast<NVB::Info::Plan::Backup*>(plan))
            backup->forceFullSchedule() = copy;
    }
}

void FrequencyDaily::initDaily(NVB::Info::Plan::Base* plan)
{
    NVB::Info::Plan::Schedule copy(schedule(plan));
    copy.setFrequencyType(NVB::Info::Plan::Schedule::Daily);
    if (m_at->isChecked()) {
        copy.setDailyRecurrence(false);
        copy.setOccursAt(m_atValue->time());
    } else if (m_every->isChecked()) {
        copy.setDailyRecurrence(true);
        copy.setOccursEvery(m_minutes->value(), m_from->time(), m_to->time());
    }
    assignBack(plan, copy);
}

void FrequencyDaily::initPlan(NVB::Info::Plan::Base* plan)
{
    if (plan)
        initDaily(plan);
}

void FrequencyDaily::fromPlan(NVB::Info::Plan::Base* plan)
{
    if (!plan)
        return;
    const NVB::Info::Plan::Schedule& source = schedule(plan);
    const auto every = source.occursEvery();
    if (source.occursAt().isValid())
        m_atValue->setTime(source.occursAt());
    if (every.from.isValid())
        m_from->setTime(every.from);
    if (every.to.isValid())
        m_to->setTime(every.to);
    m_minutes->setValue(every.minutes);
    // An inherited start time is always the "At" time.
    if (source.dailyRecurrence() && !m_inherited)
        m_every->setChecked(true);
    else
        m_at->setChecked(true);
}

bool FrequencyDaily::validate()
{
    return true;
}

} // namespace NVB::GUI
