#include "widgets/paintwatch.h"

#include <QPaintEvent>
#include <QTest>
#include <QWidget>

PaintWatch::PaintWatch(QWidget &widget)
{
    widget.installEventFilter(this);
    widget.show();
    (void)QTest::qWaitForWindowExposed(widget.window());
    (void)QTest::qWaitFor([this] { return m_paints > 0; });
    m_seen = settled();
}

bool PaintWatch::seesRepaint()
{
    const bool repainted = QTest::qWaitFor([this] { return m_paints > m_seen; });
    m_seen = settled();
    return repainted;
}

int PaintWatch::settled()
{
    for (int before = -1; before != m_paints;) {
        before = m_paints;
        for (int i = 0; i < 5; ++i)
            QCoreApplication::processEvents();
    }
    return m_paints;
}

bool PaintWatch::eventFilter(QObject *, QEvent *event)
{
    if (event->type() == QEvent::Paint) {
        ++m_paints;
        m_lastRegion = static_cast<QPaintEvent *>(event)->region();
    }
    return false;
}
