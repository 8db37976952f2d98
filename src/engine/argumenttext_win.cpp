#include "engine/argumenttext.h"

#include <QProcess>
#include <QRegularExpression>

#include <qt_windows.h>

using namespace Qt::Literals::StringLiterals;

void setArgumentText(QProcess &process, const QString &text)
{
    process.setNativeArguments(text);
}

QString ownArgumentText()
{
    const QString line = QString::fromWCharArray(GetCommandLineW());
    // The program comes first. As for CommandLineToArgvW(), it ends at the second double quote if
    // it begins with one, else at a blank.
    static const QRegularExpression program(uR"re(^("[^"]*"?|[^ \t]*))re"_s);
    return line.sliced(program.match(line).capturedLength()).trimmed();
}
