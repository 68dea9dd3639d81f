#pragma once

#include <QIcon>
#include <QString>

namespace NVB::GUI {

// The library's images. Views ask by type, so that a picture can change in
// one place; every image lies in the resources under ":/images/".
class IconManager
{
public:
    enum Type {
        Empty = 0,
        Add = 7,
        Edit = 8,
        Settings = 18,
        BackupPlan = 44,
        BackupPlanFailed = 45,
        BackupPlanRunning = 46,
        BackupPlanWarning = 47,
        BackupPlanSuccess = 48,
        RestorePlan = 49,
        RestorePlanFailed = 50,
        RestorePlanRunning = 51,
        RestorePlanWarning = 52,
        RestorePlanSuccess = 53,
        Warning = 100,
        Error = 101,
        Question = 102,
        EncryptionLock = 103,
        Storage = 104
    };

    // The icon of a type; a size of 0 leaves the icon at the image's own
    // scale, any other size gives a square pixmap of that many pixels. Empty
    // and unknown types give a null icon.
    static QIcon icon(Type type, int size = 0);
    // The path of a type's scalable image, or an empty text.
    static QString ResourceSvg(Type type);
    // Any image of the resources by its file name ("warning.svg").
    static QIcon resource(const QString& fileName, int size = 0);
    // The icon of a storage provider; a type that is no provider gets the
    // generic storage image.
    static QIcon storage(int cloudType, int size = 0);

private:
    static QIcon sized(const QString& path, int size);
};

} // namespace NVB::GUI
