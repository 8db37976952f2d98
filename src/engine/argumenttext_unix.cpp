#include "engine/argumenttext.h"

#include <QProcess>

void setArgumentText(QProcess &process, const QString &text)
{
    process.setArguments(QProcess::splitCommand(text));
}
