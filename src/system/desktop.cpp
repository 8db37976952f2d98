#include "system/desktop.h"

void Desktop::setBlockReason(QWindow &, const QString &) {}

void Desktop::keepAwake(bool) {}

void Desktop::showOnTaskBar(QWindow &, Button, double) {}
