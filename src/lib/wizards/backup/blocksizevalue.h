#pragma once

#include <QStringList>
#include <QVector>

namespace NVB::GUI {

// The block sizes a disk image plan offers, increasing, and their texts at
// the same positions.
extern const QVector<unsigned long long> BlockSizeValue;
extern const QStringList BlockSizeValueString;

} // namespace NVB::GUI
