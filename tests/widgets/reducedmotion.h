#pragma once

#include <QtGlobal>

/// For as long as it lives, the user wants no motion.
class ReducedMotion
{
public:
    ReducedMotion() { qputenv("VARNEL_REDUCED_MOTION", "1"); }
    ~ReducedMotion() { qunsetenv("VARNEL_REDUCED_MOTION"); }
    Q_DISABLE_COPY_MOVE(ReducedMotion)
};
