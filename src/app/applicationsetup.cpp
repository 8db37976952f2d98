#include "app/applicationsetup.h"

#include "app/applicationfonts.h"
#include "app/applicationicon.h"
#include "product/product.h"
#include "system/machine.h"
#include "theme/thememanager.h"
#include "widgets/animation.h"
#include "widgets/paintedaccessibility.h"

#include <QApplication>

void setUpApplication()
{
    QApplication::setApplicationName(Product::kSetupName.toString());
    QApplication::setOrganizationName(Product::kPublisher.toString());
    // The wizard ends the process itself: it may still have a program to start when its window is
    // gone.
    QApplication::setQuitOnLastWindowClosed(false);

    if (const QIcon icon = applicationIcon(); !icon.isNull())
        QApplication::setWindowIcon(icon);
    registerApplicationFonts();
    installPaintedAccessibility();
    setDesktopMotionQuery(desktopPrefersReducedMotion);
    ThemeManager::instance().setDarkMode(false);
}
