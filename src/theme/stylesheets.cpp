#include "theme/stylesheets.h"

using namespace Qt::Literals::StringLiterals;

QString panelStyle(const QString &padding, const QString &ink)
{
    return u"background:@INS_PANEL;border:1px solid @INS_LINE;border-radius:%1px;"
           "padding:%2;color:%3;"_s.arg(QString::number(kFrameRadius), padding, ink);
}

QString ghostButtonStyle()
{
    return u"QPushButton{padding:0 14px;border-radius:%1px;background:@INS_BG;"
           "border:1px solid @INS_LINE2;color:@INS_TX;}"
           "QPushButton:hover{background:@INS_PANEL;border-color:@INS_TX3;}"_s.arg(kFrameRadius);
}
