#include "models/filenode.h"

namespace NVB::GUI {

FileNode::FileNode(QObject* parent)
    : QObject(parent)
{ }

FileNode::~FileNode() = default;

} // namespace NVB::GUI
