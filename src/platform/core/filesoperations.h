#pragma once

#include <QString>

namespace SHARED::functions::files_operations {

// The value of an attribute of the root element of an XML file. An empty text
// when the file is missing or unreadable, is not XML, or lacks the attribute;
// the reason is logged.
QString get_attrib_from_file(const QString& filePath, const QString& attribute);

} // namespace SHARED::functions::files_operations
