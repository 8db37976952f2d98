#include "widgets/spokentext.h"

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

bool saysSomething(const QString &line)
{
    return std::any_of(line.begin(), line.end(), [](QChar c) { return c.isLetterOrNumber(); });
}

} // namespace

QString spokenText(const QStringList &texts)
{
    QString result;
    for (const QString &line : texts.join(u'\n').split(u'\n')) {
        if (!saysSomething(line))
            continue;
        if (!result.isEmpty())
            result += u' ';
        result += line;
        if (!u".!?:…"_s.contains(line.back()))
            result += u'.';
    }
    return result;
}
