#include "wizard/uninstallingpage.h"

UninstallingPage::UninstallingPage(QWidget *parent)
    : ProgressPage({ .title = tr("Uninstalling"),
                     .body = tr("Removing Varnel Schematics from your computer."),
                     .caption = tr("Do not turn off your PC.") },
                   nullptr, parent)
{}
