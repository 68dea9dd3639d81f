#include "blocksizevalue.h"

namespace NVB::GUI {

// The engine reads a volume in blocks of 4 KiB to 64 MiB.
const QVector<unsigned long long> BlockSizeValue {
    64ull << 10, 128ull << 10, 256ull << 10, 512ull << 10, 1ull << 20, 2ull << 20, 4ull << 20, 8ull << 20};
const QStringList BlockSizeValueString {QStringLiteral("64 KB"), QStringLiteral("128 KB"), QStringLiteral("256 KB"),
    QStringLiteral("512 KB"), QStringLiteral("1 MB"), QStringLiteral("2 MB"), QStringLiteral("4 MB"),
    QStringLiteral("8 MB")};

} // namespace NVB::GUI
