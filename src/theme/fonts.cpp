#include "theme/fonts.h"

using namespace Qt::Literals::StringLiterals;

QFont monospacedFont(int pixelSize)
{
    QFont font(u"JetBrains Mono"_s);
    font.setPixelSize(pixelSize);
    return font;
}

QFont displayFont(int pixelSize, QFont::Weight weight)
{
    QFont font(u"Space Grotesk"_s);
    font.setPixelSize(pixelSize);
    font.setWeight(weight);
    return font;
}
