#include "app/applicationfonts.h"

#include <QFontDatabase>

using namespace Qt::Literals::StringLiterals;

void registerApplicationFonts()
{
    for (const QString &font :
         { u":/fonts/SpaceGrotesk.ttf"_s, u":/fonts/JetBrainsMono-Regular.ttf"_s,
           u":/fonts/JetBrainsMono-Medium.ttf"_s })
        QFontDatabase::addApplicationFont(font);
}
