#include "files.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

using namespace Qt::Literals::StringLiterals;

void failOn(const QString &action, const QString &path, const QString &reason)
{
    throw FileError { u"Setup was unable to "_s % action % u" \""_s % QDir::toNativeSeparators(path)
                      % u"\": "_s % reason % u'.' };
}

std::optional<QByteArray> readFile(const QString &file)
{
    QFile input(file);
    if (!QFileInfo(file).isFile() || !input.open(QIODevice::ReadOnly))
        return {};
    return input.readAll();
}

void writeFile(const QString &file, const QByteArray &content)
{
    QFile output(file);
    if (!output.open(QIODevice::WriteOnly | QIODevice::Unbuffered)
        || output.write(content) != content.size())
        failOn(u"write the file"_s, file, output.errorString());
}

void copyFile(const QString &from, const QString &to)
{
    QFile::remove(to);
    if (QFile source(from); !source.copy(to))
        failOn(u"write the file"_s, to, source.errorString());
}

void makeExecutable(const QString &file)
{
    QFile::setPermissions(
        file, QFile::permissions(file) | QFile::ExeOwner | QFile::ExeGroup | QFile::ExeOther);
}

void appendLine(const QString &file, const QByteArray &line)
{
    // One write for the whole line, so that two processes never mix theirs.
    QFile output(file);
    if (output.open(QIODevice::Append | QIODevice::Unbuffered))
        output.write(line + '\n');
}
