#include "pages/fittedtext.h"

#include <QTextBoundaryFinder>

using namespace Qt::Literals::StringLiterals;

namespace {

const QString kEllipsis = u"…"_s;
const QString kLogInReason = u"(log: "_s;
const QString kLogAlone = u"Log: "_s;
const QString kGap = u"  "_s; ///< between a sentence and what follows
const QString kFreeOn = u" free on "_s;

constexpr QChar kBreakHere(0x200b); // zero width space
constexpr QChar kNoBreakHere(0xfeff); // zero width no-break space, which most fonts have

/// No label has room for more, and measuring a text takes its time.
constexpr qsizetype kMostShown = 2000;

bool isSeparator(QChar character)
{
    return character == u'\\' || character == u'/';
}

/// The last place up to `place` at which `text` can be cut without taking a letter apart.
qsizetype cutAt(const QString &text, qsizetype place)
{
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    finder.setPosition(place);
    return finder.isAtBoundary() ? place : qMax(finder.toPreviousBoundary(), qsizetype(0));
}

QString firstOf(const QString &text, qsizetype count)
{
    return text.left(cutAt(text, count));
}

QString lastOf(const QString &text, qsizetype count)
{
    return text.mid(cutAt(text, text.size() - count));
}

/// shown(n) for the greatest n up to `most` that has room, shown(0) if none has.
template <typename Shown>
QString longest(qsizetype most, Shown shown, const HasRoom &hasRoom)
{
    qsizetype least = 0;
    most = qMin(most, kMostShown);
    while (least < most) {
        const qsizetype middle = (least + most + 1) / 2;
        if (hasRoom(shown(middle)))
            least = middle;
        else
            most = middle - 1;
    }
    return shown(least);
}

bool isWhole(const QString &text, const HasRoom &hasRoom)
{
    return text.size() <= kMostShown && hasRoom(text);
}

/// Shortens the middle of `path` between `before` and `after`.
QString shortenBetween(const QString &before, const QString &path, const QString &after,
                       const HasRoom &hasRoom)
{
    return longest(
        path.size() - 1,
        [&](qsizetype length) -> QString {
            return before + firstOf(path, (length + 1) / 2) + kEllipsis + lastOf(path, length / 2)
                + after;
        },
        hasRoom);
}

/// Where the part of a message begins that names the log; its end if none does.
qsizetype startOfLog(const QString &message)
{
    if (const qsizetype start = message.lastIndexOf(kLogInReason); start >= 0)
        return start;
    if (const qsizetype start = message.lastIndexOf(kGap + kLogAlone); start >= 0)
        return start + kGap.size();
    return message.startsWith(kLogAlone) ? 0 : message.size();
}

} // namespace

QString shortenMiddle(const QString &text, const HasRoom &hasRoom)
{
    return isWhole(text, hasRoom) ? text : shortenBetween({}, text, {}, hasRoom);
}

QString shortenFinding(const QString &text, const HasRoom &hasRoom)
{
    const qsizetype freeOn = text.indexOf(kFreeOn);
    if (freeOn < 0 || isWhole(text, hasRoom))
        return shortenMiddle(text, hasRoom);
    const qsizetype volume = freeOn + kFreeOn.size();
    const QString shortened = shortenBetween(text.left(volume), text.mid(volume), {}, hasRoom);
    return hasRoom(shortened) ? shortened : shortenMiddle(text, hasRoom);
}

QString shortenMessage(const QString &text, const HasRoom &hasRoom)
{
    if (isWhole(text, hasRoom))
        return text;
    const qsizetype start = startOfLog(text);
    const QString log = text.mid(start);
    QString reason = text.left(start);
    while (reason.endsWith(u' '))
        reason.chop(1);
    const QString gap = log.isEmpty() ? QString() : text.mid(reason.size(), start - reason.size());

    const QString shortened = longest(
        reason.size() - 1,
        [&](qsizetype length) -> QString {
            return firstOf(reason, length).trimmed() + kEllipsis + gap + log;
        },
        hasRoom);
    if (log.isEmpty() || (!reason.isEmpty() && hasRoom(shortened)))
        return shortened;

    const bool isAlone = log.startsWith(kLogAlone);
    const QString mark = isAlone ? kLogAlone : kLogInReason;
    const QString before = (reason.isEmpty() ? QString() : kEllipsis + gap) + mark;
    const QString after = !isAlone && log.endsWith(u')') ? u")"_s : QString();
    return shortenBetween(before, log.mid(mark.size()).chopped(after.size()), after, hasRoom);
}

QString withPathBreaks(const QString &text)
{
    QString result;
    result.reserve(text.size() + 16);
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar character = text[i];
        const bool isFirst = isSeparator(character) && (i == 0 || !isSeparator(text[i - 1]));
        const bool isLast =
            isSeparator(character) && i + 1 < text.size() && !isSeparator(text[i + 1]);
        if (isFirst && i > 0 && !text[i - 1].isSpace())
            result += kNoBreakHere;
        result += character;
        if (isLast)
            result += kBreakHere;
    }
    return result;
}
