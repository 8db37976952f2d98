// Whether unpacking the engine can be felt while the user reads: how far apart the frames of the
// wizard's first page are meanwhile, on which the mark floats, beside a wizard that unpacks
// nothing, and how long it takes with and without the pauses for others.

#include "app/applicationsetup.h"
#include "bundle/bundle.h"
#include "bundle/carriedengine.h"
#include "wizard/installerwizard.h"

#include <QApplication>
#include <QCryptographicHash>
#include <QElapsedTimer>
#include <QEvent>
#include <QEventLoop>
#include <QTemporaryFile>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <vector>

namespace {

constexpr qint64 kEngineSize = 100 * 1024 * 1024;
constexpr int kEntrance = 3000; ///< milliseconds until only the mark moves
constexpr int kWithout = 2000; ///< milliseconds without unpacking

/// Notes how far apart the frames of a window are, in milliseconds.
class FrameWatch : public QObject
{
public:
    explicit FrameWatch(QWidget &window)
    {
        m_clock.start();
        window.installEventFilter(this);
    }

    [[nodiscard]] std::vector<double> sortedGaps() const
    {
        std::vector<double> gaps = m_gaps;
        std::sort(gaps.begin(), gaps.end());
        return gaps;
    }

protected:
    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == QEvent::UpdateRequest) {
            m_gaps.push_back(double(m_clock.nsecsElapsed()) / 1e6);
            m_clock.start();
        }
        return false;
    }

private:
    QElapsedTimer m_clock;
    std::vector<double> m_gaps;
};

/// Runs the event loop until `begin`'s end is called, and prints how far apart the frames were.
void report(const char *what, const std::function<void(const std::function<void()> &end)> &begin)
{
    InstallerWizard wizard;
    wizard.setRunMode(RunMode::Install);
    wizard.show();
    QEventLoop loop;
    QTimer::singleShot(kEntrance, &loop, &QEventLoop::quit);
    loop.exec();

    const FrameWatch watch(wizard);
    QElapsedTimer whole;
    whole.start();
    begin([&loop] { loop.quit(); });
    loop.exec();
    const std::vector<double> gaps = watch.sortedGaps();
    if (gaps.empty())
        return void(std::puts("The window does not move."));
    std::printf("%-36s %6.2f s, a frame comes after %5.1f (median), %5.1f (99 of 100), %5.1f ms "
                "(longest)\n",
                what, double(whole.elapsed()) / 1e3, gaps[gaps.size() / 2],
                gaps[gaps.size() * 99 / 100], gaps.back());
}

} // namespace

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    setUpApplication();
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
