#pragma once

#include <QString>

class QAbstractItemModel;

namespace NVB::GUI {

// Makes one of the application's shared models. The library asks for a model
// at every use and never deletes it, so create() must hand back the same
// long-lived model each time.
class ModelCreator
{
public:
    virtual ~ModelCreator();

    virtual QAbstractItemModel* create() = 0;
    virtual QString type() const = 0;
};

} // namespace NVB::GUI
