#pragma once

#include <QList>

class WizardPage;

/// One of each page, in the order of PageId, for the caller to own.
[[nodiscard]] QList<WizardPage *> createPages();
