#pragma once

#include "scenario.h"

#include <QFile>

/// The log of a run, in the form a real setup writes it: UTF-8 with byte-order mark, CRLF, each
/// entry with a time stamp in front and the further lines of an entry indented by as many blanks.
/// Without a file, and after a failed write, it takes everything and writes nothing.
class EngineLog
{
public:
    void open(const QString &file);
    void close();

    /// One entry; a line feed in the text begins an indented line.
    void line(const QString &text);

    /// A box that a silent run does not show.
    void messageBox(const QString &text);

    /// Fills the log with entries like those of copied files until it has at least that size.
    void padTo(qint64 bytes);

private:
    bool write(const QByteArray &bytes);

    QFile m_file;
};

/// The small ini file that the wizard polls. It is rewritten in place, so a reader may meet it
/// empty. A failed write is ignored: an installation does not fail because it cannot report.
class StatusWriter
{
public:
    /// An empty path writes nothing.
    StatusWriter(const QString &file, const Scenario &scenario);

    /// Percent from 0 to 100.
    void write(double percent, const QString &file, const QString &text);

private:
    [[nodiscard]] QByteArray content(double percent, const QString &file,
                                     const QString &text) const;

    QString m_file;
    const Scenario &m_scenario;
    int m_writes = 0;
};
