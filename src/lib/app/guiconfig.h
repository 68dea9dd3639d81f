#pragma once

#include <QString>

// Looks shared by the console's widgets.
namespace NVB::GUI::Config {

namespace ToolButton {
// The small square buttons beside a field (add, settings, "..."): flat until
// the pointer is on them, so that a column of them does not outweigh the
// fields they serve, and plainly grey when disabled.
inline const QString StyleSheet = QStringLiteral(
    "QToolButton { border: 1px solid transparent; border-radius: 3px; padding: 2px; background: transparent; }"
    "QToolButton:hover { border-color: palette(mid); background: palette(button); }"
    "QToolButton:pressed { background: palette(midlight); }");
} // namespace ToolButton

} // namespace NVB::GUI::Config
