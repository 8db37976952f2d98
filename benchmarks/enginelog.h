#pragma once

#include <QByteArray>
#include <QFile>

constexpr qint64 kMegabyte = 1 << 20;

/// What a setup engine logs for the file number `number`: six lines, about 370 bytes.
inline QByteArray logOfOneFile(int number)
{
    const QByteArray stamp =
        "2026-11-21 10:15:30." + QByteArray::number(100 + number % 900) + "   ";
    return stamp + "-- File entry --\r\n" + stamp + "Non-default bitness: 64-bit\r\n" + stamp
        + "Dest filename: C:\\Program Files\\Varnel Schematics\\symbols\\part"
        + QByteArray::number(number) + ".lib\r\n" + stamp
        + "Time stamp of our file: 2026-10-02 09:00:00.000\r\n" + stamp + "Installing the file.\r\n"
        + stamp + "Successfully installed the file.\r\n";
}

inline void append(const QString &path, const QByteArray &content)
{
    QFile file(path);
    if (!file.open(QIODevice::Append) || file.write(content) != content.size())
        qFatal("Cannot write %s", qPrintable(path));
}

/// Writes a log of at least `size` bytes; `last` ends it.
inline void writeLog(const QString &path, qint64 size, const QByteArray &last)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        qFatal("Cannot write %s", qPrintable(path));
    QByteArray block;
    for (int i = 0; block.size() < kMegabyte; ++i)
        block += logOfOneFile(i);
    while (file.size() < size)
        file.write(block);
    file.write(last);
}
