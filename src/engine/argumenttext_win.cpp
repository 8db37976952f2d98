#include "engine/argumenttext.h"

#include <QProcess>

#include <qt_windows.h>

void setArgumentText(QProcess &process, const QString &text)
{
    process.setNativeArguments(text);
}

QString ownArgumentText()
{
    const QString line = QString::fromWCharArray(GetCommandLineW());
    // The program comes first, and ends at a blank outside of double quotes.
    bool isQuoted = false;
    qsizetype end = 0;
    for (; end < line.size(); ++end) {
        if (line[end] == u'"')
            isQuoted = !isQuoted;
        else if (!isQuoted && (line[end] == u' ' || line[end] == u'\t'))
            break;
    }
    return line.sliced(end).trimmed();
}
