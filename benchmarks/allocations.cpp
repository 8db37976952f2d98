// How often a tick of the confetti takes memory from the heap, which is to be never, beside a
// burst, which has to. In a window that is shown, so that all that a tick sets off counts.
//
//   QT_QPA_PLATFORM=offscreen bench_allocations

#include "widgets/confettioverlay.h"

#include <QApplication>
#include <QTimerEvent>

#include <cstdio>
#include <cstdlib>

namespace {

constexpr int kTicks = 100; // all pieces still fly, or at least fade

long g_allocations = 0;

} // namespace

// The C library's own, with a count: Qt takes its memory from here as well as from operator new.
extern "C" void *__libc_malloc(size_t size);
extern "C" void *malloc(size_t size)
{
    ++g_allocations;
    return __libc_malloc(size);
}

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    QWidget window;
    window.resize(680, 474);
    ConfettiOverlay overlay(&window);
    window.show();

    const auto counted = [](auto work) {
        const long before = g_allocations;
        work();
        return g_allocations - before;
    };
    const QList<QColor> colours { Qt::red, Qt::blue, Qt::green };
    const long burst = counted([&] { overlay.burst({ 260, 80 }, colours); });
    QCoreApplication::processEvents();

    auto *timer = overlay.findChild<QTimer *>();
    long ticks = 0;
    long updates = 0;
    for (int i = 0; i < kTicks; ++i) {
        ticks += counted([timer] {
            QTimerEvent event(timer->timerId());
            QCoreApplication::sendEvent(timer, &event);
        });
        overlay.repaint(); // as the next frame would
        updates += counted([&overlay] { overlay.update(); });
        overlay.repaint();
    }
    std::printf("confetti, %d ticks   %ld allocations   %d bare update() %ld   a burst %ld\n",
                kTicks, ticks, kTicks, updates, burst);
}
