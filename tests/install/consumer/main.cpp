// A program outside the source tree, built against the installed package.
#include <cstdio>

#include <QCoreApplication>

#include "app/delegates/sizedelegate.h"
#include "app/delegates/truefalsedelegate.h"
#include "core/providerdefines.h"

int main(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    const QString line = NVB::GUI::TrueFalseDelegate::toText(1) + QLatin1Char(' ')
                         + NVB::GUI::SizeDelegate::toText(1024.0) + QLatin1Char(' ')
                         + NVB::defines::ProviderDefines::BuildVersion();
    std::printf("%s\n", qPrintable(line));
    return 0;
}
