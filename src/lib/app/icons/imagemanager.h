#pragma once

#include <QPixmap>
#include <QString>

namespace NVB::GUI {

// The larger pictures of the interface, asked for by number. A picture of the
// same file name in the installation's images folder (Application's
// getImagesPath()) takes the place of the built-in one, which is how a
// reseller's rebranding changes them without a new build.
class ImageManager
{
public:
    enum Type { Empty = 0, WizardBackground = 2 };

    // The picture of a type; an unknown type gives a null pixmap.
    static QPixmap image(int type);
    // The file name that replaces a type's picture, or an empty text.
    static QString fileName(int type);

private:
    static QPixmap drawnWizardBackground();
};

} // namespace NVB::GUI
