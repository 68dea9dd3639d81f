#include "wizards/common/pagecheckboxlegenddialog.h"

#include <QDialogButtonBox>
#include <QGridLayout>
#include <QLabel>
#include <QVBoxLayout>

#include "app/application.h"

namespace NVB::GUI {

PageCheckBoxLegendDialog::PageCheckBoxLegendDialog(QWidget* parent)
    : QDialog(parent)
{
    setWindowTitle(QStringLiteral("%1 %2").arg(Application::applicationName(), tr("Legend")));
    const QList<QPair<int, QString>> rows {
        {2,
            tr("The folder is selected, including all the subitems. All newly created subitems will automatically "
               "be included.")},
        {0, tr("The folder is not selected and no subitems are selected within the folder.")},
        {1,
            tr("The folder is included, and some subitems are excluded. All newly created subitems will "
               "automatically be included.")},
        {1001,
            tr("The folder itself is not included but some subitems are included. All newly created subitems will "
               "not be included within this folder, but will be included within the selected subfolders.")},
    };
    auto* grid = new QGridLayout();
    grid->setHorizontalSpacing(12);
    grid->setVerticalSpacing(12);
    grid->setColumnStretch(1, 1);
    int row = 0;
    for (const auto& [state, text] : rows) {
        auto* image = new QLabel(this);
        image->setAlignment(Qt::AlignTop | Qt::AlignHCenter);
        image->setMinimumWidth(20);
        auto* words = new QLabel(text, this);
        words->setWordWrap(true);
        words->setMinimumWidth(380);
        grid->addWidget(image, row, 0);
        grid->addWidget(words, row, 1);
        m_labels.insert(state, {image, words});
        ++row;
    }
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(grid);
    layout->addWidget(buttons);
}

void PageCheckBoxLegendDialog::setPixmapLegend(int state, const QPixmap& pixmap)
{
    const auto found = m_labels.constFind(state);
    if (found == m_labels.cend())
        return;
    found->first->setPixmap(pixmap);
}

QPixmap PageCheckBoxLegendDialog::pixmapLegend(int state) const
{
    const auto found = m_labels.constFind(state);
    return found == m_labels.cend() ? QPixmap() : found->first->pixmap(Qt::ReturnByValue);
}

QString PageCheckBoxLegendDialog::textLegend(int state) const
{
    const auto found = m_labels.constFind(state);
    return found == m_labels.cend() ? QString() : found->second->text();
}

} // namespace NVB::GUI
