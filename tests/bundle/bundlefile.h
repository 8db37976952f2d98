#pragma once

#include "bundle/bundle.h"

#include <QByteArray>

class Sandbox;

/// A file with an engine behind something else, as tools/bundle makes one.
struct BundleFile
{
    QByteArray engine;
    Bundle bundle;
    QString path;

    BundleFile(const Sandbox &sandbox, qsizetype engineSize);
    /// Changes one byte of the file.
    void alter(qint64 place) const;
};
