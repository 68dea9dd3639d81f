#include "operationresult.h"

namespace NVL::Cloud {

OperationResult OperationResult::failure(int code, const QString& message)
{
    OperationResult result;
    result.errorCode = code;
    result.errorMessage = message;
    return result;
}

} // namespace NVL::Cloud
