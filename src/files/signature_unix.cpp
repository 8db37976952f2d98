#include "files/signature.h"

bool isThisProgramSigned()
{
    return false;
}

QString trustedSigner(const QString &)
{
    return {};
}
