#pragma once

#include "pages/layoutoutline.h"
#include "pages/pagetext.h"
#include "widgets/progresstrack.h"
#include "wizard/installingpage.h"
#include "wizard/steplist.h"
#include "wizard/steprow.h"
#include "wizard/uninstallingpage.h"
#include "wizard/updatingpage.h"

#include <QLabel>

#include <memory>

/// A progress page ("install", "update" or "uninstall") and what is on it.
struct ProgressParts
{
    explicit ProgressParts(const QString &name)
    {
        if (name == u"install")
            page = std::make_unique<InstallingPage>();
        else if (name == u"update")
            page = std::make_unique<UpdatingPage>();
        else
            page = std::make_unique<UninstallingPage>();
        const QList<QWidget *> widgets = layoutWidgets(page->layout());
        const qsizetype count = widgets.size();
        caption = qobject_cast<QLabel *>(widgets[count - 1]);
        track = qobject_cast<ProgressTrack *>(widgets[count - 2]);
        percent = qobject_cast<QLabel *>(widgets[count - 3]);
        file = qobject_cast<QLabel *>(widgets[count - 4]);
        steps = qobject_cast<StepList *>(widgets[count - 5]);
        page->resize(kPageSize);
    }

    [[nodiscard]] int shownSteps() const
    {
        int count = 0;
        for (const StepList::StepRow *row : steps->rows())
            count += row->isRevealed() ? 1 : 0;
        return count;
    }

    std::unique_ptr<ProgressPage> page;
    QLabel *caption;
    ProgressTrack *track;
    QLabel *percent;
    QLabel *file;
    StepList *steps;
};
