#include "models/modelcreator.h"

namespace NVB::GUI {

ModelCreator::~ModelCreator() = default;

} // namespace NVB::GUI
