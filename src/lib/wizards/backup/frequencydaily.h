#pragma once

#include "wizards/backup/frequencybase.h"

class QGridLayout;
class QLabel;
class QRadioButton;
class QSpinBox;
class QTimeEdit;
class QVBoxLayout;

namespace NVB::Info::Plan {
class Schedule;
}

namespace NVB::GUI {

// Once a day at a time, or every few minutes between two times. The weekly
// and monthly editors show these controls below their own.
class FrequencyDaily : public FrequencyBase
{
    Q_OBJECT
public:
    static constexpr char Name[] = "Daily";

    static constexpr char FieldUsedOccursAt[] = "Field_UsedOccursAt";
    static constexpr char FieldUsedOccursAtValue[] = "Field_UsedOccursAtValue";
    static constexpr char FieldUsedOccursEvery[] = "Field_UsedOccursEvery";
    static constexpr char FieldUsedOccursEveryValue[] = "Field_UsedOccursEveryValue";
    static constexpr char FieldUsedOccursEveryForm[] = "Field_UsedOccursEveryForm";
    static constexpr char FieldUsedOccursEveryTo[] = "Field_UsedOccursEveryTo";

    FrequencyDaily(Type type, PlanWizardBase::PageBase* page);

    QString summary() override;
    void initPlan(NVB::Info::Plan::Base* plan) override;
    void fromPlan(NVB::Info::Plan::Base* plan) override;
    bool validate() override;

    // Unique on the page: "<prefix>_<name>", with FullPrefix in front for the
    // full schedule.
    QString fieldName(const QString& name) const;
    QString prefix() const { return m_prefix; }

    QRadioButton* atRadio() const { return m_at; }
    QRadioButton* everyRadio() const { return m_every; }
    QTimeEdit* atEdit() const { return m_atValue; }
    QSpinBox* minutesBox() const { return m_minutes; }
    QTimeEdit* fromEdit() const { return m_from; }
    QTimeEdit* toEdit() const { return m_to; }

protected:
    FrequencyDaily(Type type, const QString& prefix, PlanWizardBase::PageBase* page);

    void init(bool inherited);
    void addSubTitle(const QString& text);
    // The daily part's rows alone.
    QString dailySummary() const;
    // Writes the daily part into a copy of the schedule and assigns it back.
    void initDaily(NVB::Info::Plan::Base* plan);
    // Assigns an edited copy back where schedule() took it from.
    void assignBack(NVB::Info::Plan::Base* plan, NVB::Info::Plan::Schedule& copy) const;

    QVBoxLayout* m_layout;

private:
    void registerOn(const QString& name, QWidget* widget);

    const QString m_prefix;
    bool m_inherited = false;
    QRadioButton* m_at = nullptr;
    QTimeEdit* m_atValue = nullptr;
    QRadioButton* m_every = nullptr;
    QSpinBox* m_minutes = nullptr;
    QTimeEdit* m_from = nullptr;
    QTimeEdit* m_to = nullptr;
};

} // namespace NVB::GUI
