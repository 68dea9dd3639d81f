#pragma once

#include <QFileIconProvider>
#include <QHash>
#include <QIcon>

namespace NVB::GUI {

// The icons of file trees. Asked once per painted row, so each kind of icon is
// made once and kept.
class IconProvider : public QFileIconProvider
{
public:
    IconProvider();

    QIcon icon(IconType type) const override;
    using QFileIconProvider::icon;

private:
    mutable QHash<int, QIcon> m_icons;
};

} // namespace NVB::GUI
