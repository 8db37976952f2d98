#include "wizard/installingpage.h"

InstallingPage::InstallingPage(QWidget *parent)
    : ProgressPage({ .title = tr("Installing"),
                     .body = tr("Roughly a minute. You can keep using your PC."),
                     .caption = tr("This may take a few minutes.") },
                   nullptr, parent)
{}
