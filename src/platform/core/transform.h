#pragma once

#include <QString>

namespace SHARED::functions::help::transform {

// A byte count as a person reads it: "512 bytes", "1.50 KB", "3.21 GB".
// Units step by 1024. A negative count keeps its sign.
QString from_byte_to_norm(double bytes);

} // namespace SHARED::functions::help::transform
