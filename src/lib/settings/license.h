#pragma once

#include <QWidget>

class QLabel;

namespace NVB::GUI::Settings {

// The licence tab of the standalone edition: which edition this
// installation runs and what it allows. The edition comes from the
// installation's config file, read afresh on every load; this build has no
// licence service to check a code against, so the tab shows the state and
// where it is set instead of offering an activation that could not be real.
class License : public QWidget
{
    Q_OBJECT
public:
    explicit License(QWidget* parent = nullptr);

    QLabel* editionLabel() const { return m_edition; }
    QLabel* allowsLabel() const { return m_allows; }

public slots:
    void loadSettings();

private:
    QLabel* m_edition;
    QLabel* m_allows;
    QLabel* m_source;
};

} // namespace NVB::GUI::Settings
