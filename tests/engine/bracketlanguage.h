#pragma once

#include <QTranslator>

/// A translation that puts every sentence of the engine in brackets.
class BracketLanguage : public QTranslator
{
public:
    [[nodiscard]] bool isEmpty() const override { return false; }
    [[nodiscard]] QString translate(const char *context, const char *text, const char *,
                                    int) const override
    {
        if (qstrcmp(context, "InstallerEngine") != 0)
            return {};
        return u'[' + QString::fromUtf8(text) + u']';
    }
};
