#pragma once

#include "widgets/onscreenwatcher.h"

#include <QParallelAnimationGroup>
#include <QPointer>
#include <QWidget>

/// Holds all pages, shows one, and slides and fades from one to the next.
class InstallerPane : public QWidget
{
    Q_OBJECT

public:
    explicit InstallerPane(QWidget *parent = nullptr);

    /// Takes the page over, hidden.
    void addPage(QWidget *page);

    /// Comes before setCurrentPage() if the current page is to be reset in between: what leaves the
    /// screen keeps the look that it has now until it is out of sight.
    void prepareToShow(const QWidget *page);

    /// Shows `page`; ends a transition that is still running first. The page that is shown already
    /// comes in once more, without going out.
    void setCurrentPage(QWidget *page, bool animate);
    /// Shows the current page at rest, should it still be coming in.
    void endTransition();

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void bringIn(QWidget *page, QParallelAnimationGroup *transition);
    void takeOut(QWidget *page, QParallelAnimationGroup *transition);
    /// Leaves `m_current` as the one visible page, at rest.
    void settle();

    QList<QWidget *> m_pages;
    QWidget *m_current = nullptr;
    QWidget *m_outgoing =
        nullptr; ///< only while a transition runs, and not if a page follows itself
    QPointer<QParallelAnimationGroup> m_transition;
    OnScreenWatcher m_onScreen;
};
