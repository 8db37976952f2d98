#include "app/qtvariables.h"

#include <QProcessEnvironment>

using namespace Qt::Literals::StringLiterals;

void removeQtVariables()
{
    const QStringList names = QProcessEnvironment::systemEnvironment().keys();
    for (const QString &name : names) {
        if (name.startsWith("QT_"_L1, Qt::CaseInsensitive))
            qunsetenv(name.toLocal8Bit().constData());
    }
}
