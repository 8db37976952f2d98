#include "engine/argumenttext.h"

#include <QCoreApplication>
#include <QProcess>

using namespace Qt::Literals::StringLiterals;

void setArgumentText(QProcess &process, const QString &text)
{
    process.setArguments(QProcess::splitCommand(text));
}

QString ownArgumentText()
{
    QStringList arguments = QCoreApplication::arguments().sliced(1);
    for (QString &argument : arguments) {
        argument.replace(u'"', uR"(""")"_s); // as splitCommand() reads it
        argument = u'"' + argument + u'"';
    }
    return arguments.join(u' ');
}
