#include "app/applicationsetup.h"

#include "app/applicationfonts.h"
#include "app/applicationicon.h"
#include "product/product.h"
#include "system/desktop.h"
#include "system/machine.h"
#include "system/runguard.h"
#include "theme/thememanager.h"
#include "widgets/animation.h"
#include "widgets/paintedaccessibility.h"

#include <QApplication>

void setUpApplication()
{
    QApplication::setApplicationName(Product::kSetupName.toString());
    QApplication::setOrganizationName(Product::kPublisher.toString());
    // The wizard ends the process itself: after its window has closed it may have to start the
    // installed application.
    QApplication::setQuitOnLastWindowClosed(false);

    if (const QIcon icon = applicationIcon(); !icon.isNull())
        QApplication::setWindowIcon(icon);
    registerApplicationFonts();
    installPaintedAccessibility();
    setDesktopMotionQuery(desktopPrefersReducedMotion);
    setDesktop(&systemDesktop());
    // Setup has no switch for the theme and is always light. The dark theme is there because the
    // colour tables are those of the application, which has both.
    ThemeManager::instance().setDarkMode(false);
}
