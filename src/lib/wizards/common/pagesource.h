#pragma once

#include "wizards/common/pagebase.h"

class QAbstractItemModel;
class QTreeView;
class QVBoxLayout;

namespace NVB::GUI {

// The base of the pages that show a tree of checkable items in one column.
// Any change of a mark may complete or uncomplete the page.
class PlanWizardBase::PageSource : public PlanWizardBase::PageBase
{
    Q_OBJECT
public:
    PageSource(const QString& name, QWidget* parent = nullptr);

    void setModel(QAbstractItemModel* model, int column);
    QTreeView* view() const { return m_view; }

    bool validatePage() override;
    bool isComplete() const override;

    // An internal tree path as the user knows it: without the volume or share
    // prefix, and the machine's root as "/".
    QString trimmeredPath(const QString& path) const;

protected:
    QVBoxLayout* pageLayout() const { return m_layout; }

private:
    QVBoxLayout* m_layout;
    QTreeView* m_view;
};

} // namespace NVB::GUI
