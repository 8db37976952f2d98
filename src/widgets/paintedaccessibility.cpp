#include "widgets/paintedaccessibility.h"

#include "widgets/animatedmark.h"
#include "widgets/announcer.h"
#include "widgets/gifbadge.h"
#include "widgets/progresstrack.h"
#include "widgets/revealrow.h"
#include "widgets/sealcheck.h"

#include <QAccessibleWidget>
#include <QApplication>

namespace {

class RevealRowInterface : public QAccessibleWidget
{
public:
    explicit RevealRowInterface(RevealRow *row)
        : QAccessibleWidget(row, QAccessible::ListItem), m_row(row)
    {}

    QAccessible::State state() const override
    {
        QAccessible::State state = QAccessibleWidget::state();
        state.invisible = state.invisible || !m_row->isRevealed();
        state.readOnly = true;
        return state;
    }

private:
    RevealRow *m_row;
};

/// A child of the application, not of a window: for a notification within a dialog, a screen reader
/// would also read out the whole dialog.
class AnnouncerInterface : public QAccessibleObject
{
public:
    explicit AnnouncerInterface(Announcer *announcer)
        : QAccessibleObject(announcer), m_announcer(announcer)
    {}

    QAccessible::Role role() const override { return QAccessible::Notification; }
    QAccessible::State state() const override
    {
        QAccessible::State state;
        state.invisible = !m_announcer->isRunning();
        state.readOnly = true;
        return state;
    }
    QString text(QAccessible::Text kind) const override
    {
        return kind == QAccessible::Name ? m_announcer->text() : QString();
    }
    QAccessibleInterface *parent() const override
    {
        return QAccessible::queryAccessibleInterface(qApp);
    }
    QAccessibleInterface *child(int) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface *) const override { return -1; }

private:
    Announcer *m_announcer;
};

class ProgressTrackInterface : public QAccessibleWidget, public QAccessibleValueInterface
{
public:
    explicit ProgressTrackInterface(ProgressTrack *track)
        : QAccessibleWidget(track, QAccessible::ProgressBar), m_track(track)
    {}

    void *interface_cast(QAccessible::InterfaceType type) override
    {
        if (type == QAccessible::ValueInterface)
            return static_cast<QAccessibleValueInterface *>(this);
        return QAccessibleWidget::interface_cast(type);
    }

    QVariant currentValue() const override { return m_track->target() * 100.0; }
    void setCurrentValue(const QVariant &) override {}
    QVariant maximumValue() const override { return 100.0; }
    QVariant minimumValue() const override { return 0.0; }
    QVariant minimumStepSize() const override { return 1.0; }

private:
    ProgressTrack *m_track;
};

bool isPlainWindow(const QWidget &widget)
{
    return widget.isWindow() && widget.windowType() == Qt::Window;
}

QAccessibleInterface *createInterface(const QString &, QObject *object)
{
    if (auto *row = qobject_cast<RevealRow *>(object))
        return new RevealRowInterface(row);
    if (auto *track = qobject_cast<ProgressTrack *>(object))
        return new ProgressTrackInterface(track);
    if (auto *announcer = qobject_cast<Announcer *>(object))
        return new AnnouncerInterface(announcer);
    if (qobject_cast<AnimatedMark *>(object) || qobject_cast<GifBadge *>(object)
        || qobject_cast<SealCheck *>(object))
        return new QAccessibleWidget(qobject_cast<QWidget *>(object), QAccessible::Graphic);
    // By default the role of a plain widget says nothing, even if it is a window. Dialogs, menus
    // and the like are windows of other types, whose default interface has the right role.
    if (auto *widget = qobject_cast<QWidget *>(object); widget && isPlainWindow(*widget))
        return new QAccessibleWidget(widget, QAccessible::Dialog);
    return nullptr;
}

} // namespace

void installPaintedAccessibility()
{
    QAccessible::installFactory(createInterface);
}
