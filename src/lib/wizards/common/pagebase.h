#pragma once

#include <QString>
#include <QWizardPage>

#include "wizards/common/planwizardbase.h"

namespace NVB::Info::Plan {
class Base;
}

namespace NVB::GUI {

// A page of a plan wizard. It never saves: it fills itself from a record in
// fromPlan(), describes itself in summary() and writes itself into a record
// in initPlan() when the summary page asks. Both answer false for a null or
// unfit record and leave the page as it was.
class PlanWizardBase::PageBase : public QWizardPage
{
    Q_OBJECT
public:
    explicit PageBase(const QString& name, QWidget* parent = nullptr);

    QString name() const { return m_name; }
    // The wizard's PlanType; 0 before the page belongs to a wizard.
    int planType() const;

    // Sets the title to "<wizard's name>: <page's name>". Subclasses call it
    // first.
    void initializePage() override;
    // Keeps what the user typed when he goes back.
    void cleanupPage() override;
    bool validatePage() override;
    bool isComplete() const override;
    int nextId() const override;

    // HTML table rows built from the row helpers below.
    virtual QString summary() = 0;
    virtual bool initPlan(NVB::Info::Plan::Base* plan) = 0;
    virtual bool fromPlan(NVB::Info::Plan::Base* plan) = 0;

    // Public, since the frequency editors register fields for their page.
    using QWizardPage::field;
    using QWizardPage::registerField;
    using QWizardPage::setField;

    // The three rows of every summary. Text from the user is escaped by the
    // caller (toHtmlEscaped).
    static QString headingRow(const QString& heading);
    static QString detailRow(const QString& detail);
    static QString detailRow(const QStringList& parts);
    static QString valueRow(const QString& label, const QString& value);

private:
    QString m_name;
};

} // namespace NVB::GUI
