#include "canceltoken.h"

namespace NVL::Cloud {

CancelToken::CancelToken()
    : m_flag(std::make_shared<std::atomic_bool>(false))
{ }

void CancelToken::cancel() const
{
    m_flag->store(true);
}

} // namespace NVL::Cloud
