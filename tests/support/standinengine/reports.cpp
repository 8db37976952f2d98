#include "reports.h"

#include "platform.h"

#include <QDateTime>
#include <QDir>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr char kByteOrderMark[] = "\xEF\xBB\xBF";

/// With a time in UTC, which is what the log's first line promises.
QByteArray entry(const QString &text)
{
    const QByteArray start =
        QDateTime::currentDateTimeUtc().toString(u"yyyy-MM-dd HH:mm:ss.zzz   ").toLatin1();
    const QByteArray indent = "\r\n" + QByteArray(start.size(), ' ');
    return start + text.toUtf8().replace('\n', indent) + "\r\n";
}

/// The played value whose turn it is, else the true one.
QByteArray playedOr(const QStringList &played, qsizetype turn, const QString &honest)
{
    return (played.isEmpty() ? honest : played[std::min(turn, played.size() - 1)]).toUtf8();
}

} // namespace

void EngineLog::open(const QString &file)
{
    m_file.setFileName(file);
    // Unbuffered, because the wizard reads the log while it grows.
    if (m_file.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
        write(kByteOrderMark);
    line(u"Log opened. (Time zone: UTC+00:00)"_s);
}

void EngineLog::close()
{
    line(u"Log closed."_s);
    m_file.close();
}

void EngineLog::line(const QString &text)
{
    write(entry(text));
}

void EngineLog::messageBox(const QString &text)
{
    line(u"Defaulting to OK for suppressed message box (OK):\n"_s + text);
}

void EngineLog::padTo(qint64 bytes)
{
    const QByteArray sample = entry(u"-- File entry --"_s)
        + entry(u"Dest filename: padding/component library/part.lib"_s);
    const QByteArray block = sample.repeated(2000);
    while (m_file.size() + block.size() <= bytes && write(block)) {}
    while (m_file.size() < bytes && write(entry(u"Leaving temporary file in place."_s))) {}
}

bool EngineLog::write(const QByteArray &bytes)
{
    return m_file.isOpen() && m_file.write(bytes) == bytes.size();
}

StatusWriter::StatusWriter(const QString &file, const Scenario &scenario)
    : m_file(file), m_scenario(scenario)
{}

void StatusWriter::write(double percent, const QString &file, const QString &text)
{
    if (m_file.isEmpty() || m_scenario.statusPlace == StatusPlace::Never)
        return;
    if (m_scenario.statusPlace == StatusPlace::Directory) {
        QDir().mkdir(m_file);
        return;
    }
    if (m_scenario.statusPlace == StatusPlace::Fifo) {
        // Never opened: that would wait for a reader.
        platform::makeFifo(m_file);
        return;
    }
    if (m_scenario.statusPlace == StatusPlace::Deleted && percent >= 50) {
        QFile::remove(m_file);
        return;
    }
    QFile output(m_file);
    if (output.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
        output.write(content(percent, file, text));
    ++m_writes;
}

QByteArray StatusWriter::content(double percent, const QString &file, const QString &text) const
{
    const auto has = [this](QStringView style) { return m_scenario.statusStyles.contains(style); };
    const QByteArray equals = has(u"blanks") ? " = " : "=";
    QByteArray whole = has(u"upper-section") ? "[STATUS]\n" : "[status]\n";
    const QString honest = QString::number(percent, 'f', 1);
    whole += "progress" + equals + playedOr(m_scenario.progress, m_writes, honest) + '\n';
    whole += "file" + equals + playedOr(m_scenario.files, m_writes, file) + '\n';
    whole += "status" + equals + playedOr(m_scenario.statusTexts, m_writes, text) + '\n';

    if (has(u"no-final-newline"))
        whole.chop(1);
    if (has(u"crlf"))
        whole.replace('\n', "\r\n");
    if (has(u"bom"))
        whole.prepend(kByteOrderMark);
    return has(u"half") ? whole.first(whole.size() / 2) : whole;
}
