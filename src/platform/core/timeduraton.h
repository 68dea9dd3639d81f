#pragma once

#include <QString>

namespace NVL::Utitlity {

class TimeDuraton
{
public:
    // A duration in seconds as "hh:mm:ss", with a day count in front once it
    // reaches a day ("2d 03:04:05"). A negative duration keeps its sign.
    static QString toString(int seconds);
};

} // namespace NVL::Utitlity
