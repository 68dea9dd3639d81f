#include "models/basemodel.h"

namespace NVB::GUI {

BaseModel::BaseModel(QObject* parent)
    : QAbstractItemModel(parent)
{ }

BaseModel::~BaseModel() = default;

} // namespace NVB::GUI
