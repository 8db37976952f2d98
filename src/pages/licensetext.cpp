#include "pages/licensetext.h"

#include "product/product.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>

using namespace Qt::Literals::StringLiterals;

QString licenseText(const QString &programFolder)
{
    for (QLatin1StringView place : { "/LICENSE.txt"_L1, "/../LICENSE.txt"_L1 }) {
        QFile file(programFolder + place);
        // Not a directory, nor a FIFO, which would block.
        if (!QFileInfo(file).isFile() || !file.open(QIODevice::ReadOnly | QIODevice::Text))
            continue;
        const QString text = QString::fromUtf8(file.readAll()).trimmed();
        if (!text.isEmpty())
            return text;
    }
    return QCoreApplication::translate(
               "LicensePage",
               "%1 — License Agreement\n\n%2. All rights reserved.\n\n"
               "This software is proprietary and confidential. Unauthorized "
               "copying, distribution, or use is strictly prohibited.")
        .arg(Product::kName, Product::kPublisherNotice);
}
