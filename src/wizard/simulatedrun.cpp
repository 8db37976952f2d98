#include "wizard/simulatedrun.h"

#include "product/product.h"

#include <QRandomGenerator>

#include <array>
#include <chrono>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto kTick = 70ms;
constexpr double kFileProbability = 0.22; // per tick

/// Where a made-up file would lie; the folder that was chosen has nothing to do with it.
const QString kFolder = uR"(C:\Program Files\)" + Product::kName + u'\\';
constexpr std::array<QStringView, 9> kFiles = {
    u"libEGL.dll",          u"Qt6Core.dll", u"Qt6Widgets.dll", u"Qt6Network.dll",
    u"pdfium.dll",          u"glew32.dll",  u"glfw3.dll",      uR"(config\pcb_themes_builtin.json)",
    uR"(symbols\ieee.lib)",
};

} // namespace

SimulatedRun::SimulatedRun(double step) : m_step(step)
{
    m_timer.setTimerType(Qt::PreciseTimer);
    m_timer.setInterval(kTick);
    connect(&m_timer, &QTimer::timeout, this, &SimulatedRun::tick);
}

void SimulatedRun::start()
{
    m_timer.start();
}

void SimulatedRun::tick()
{
    m_percent = qMin(m_percent + m_step, 100.0);
    Q_EMIT progress(m_percent / 100.0);
    if (QRandomGenerator::global()->generateDouble() < kFileProbability)
        Q_EMIT currentFile(kFolder + kFiles[size_t(m_fileCount++) % kFiles.size()]);
    if (m_percent >= 100.0) {
        m_timer.stop();
        Q_EMIT finished(true, QString());
    }
}
