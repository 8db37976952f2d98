// Whether unpacking the engine can be felt while the user reads: how far apart the ticks of an
// animation are meanwhile, beside a wizard that unpacks nothing, and how long it takes with and
// without the pauses for others.

#include "bundle/bundle.h"
#include "bundle/carriedengine.h"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QTemporaryFile>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <vector>

namespace {

constexpr qint64 kEngineSize = 100 * 1024 * 1024;
constexpr int kTick = 16; ///< milliseconds, as Qt's animations
constexpr int kWithout = 2000; ///< milliseconds without unpacking

/// Runs the event loop until `begin`'s end is called, and prints how far apart the ticks were.
void report(const char *what, const std::function<void(const std::function<void()> &end)> &begin)
{
    QEventLoop loop;
    QTimer timer;
    timer.setTimerType(Qt::PreciseTimer);
    QElapsedTimer clock;
    std::vector<double> gaps;
    QObject::connect(&timer, &QTimer::timeout, &timer, [&] {
        gaps.push_back(double(clock.nsecsElapsed()) / 1e6);
        clock.start();
    });
    QElapsedTimer whole;
    whole.start();
    clock.start();
    timer.start(kTick);
    begin([&loop] { loop.quit(); });
    loop.exec();
    std::sort(gaps.begin(), gaps.end());
    if (gaps.empty())
        gaps.push_back(0.0);
    std::printf("%-36s %6.2f s, a tick of %d ms takes %5.1f (median), %5.1f (99 of 100), %5.1f ms "
                "(longest)\n",
                what, double(whole.elapsed()) / 1e3, kTick, gaps[gaps.size() / 2],
                gaps[gaps.size() * 99 / 100], gaps.back());
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication application(argc, argv);
    QTemporaryFile program;
    if (!program.open())
        return 1;
    const QByteArray piece(1024 * 1024, 'e');
    QCryptographicHash sum(QCryptographicHash::Sha256);
    program.write("program");
    const Bundle bundle = [&] {
        const qint64 offset = program.pos();
        for (qint64 written = 0; written < kEngineSize; written += piece.size()) {
            program.write(piece);
            sum.addData(piece);
        }
        program.flush();
        return Bundle { .offset = offset, .size = kEngineSize, .sha256 = sum.result() };
    }();

    const auto unpack = [&](bool isHurried) {
        return [&program, &bundle, isHurried](const std::function<void()> &end) {
            auto *engine = new CarriedEngine(program.fileName(), bundle);
            QObject::connect(engine, &CarriedEngine::finished, engine, [engine, end] {
                if (!engine->error().isEmpty())
                    std::printf("%s\n", qPrintable(engine->error()));
                engine->deleteLater();
                end();
            });
            if (isHurried)
                engine->hurry();
            engine->start();
        };
    };
    report("nothing else to do",
           [](const std::function<void()> &end) { QTimer::singleShot(kWithout, qApp, end); });
    report("100 MB unpacked while the user reads", unpack(false));
    report("100 MB unpacked while the user waits", unpack(true));
    return 0;
}
