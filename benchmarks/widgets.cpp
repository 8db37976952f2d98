// What one frame of the animated widgets and of the change of pages costs, beside what it is to be
// compared with. Drawn off screen:
//
//   QT_QPA_PLATFORM=offscreen bench_widgets
//   QT_QPA_PLATFORM=offscreen QT_SCALE_FACTOR=2 bench_widgets pages     the change of pages alone

#include "app/applicationfonts.h"
#include "pages/checkrow.h"
#include "pages/licensepage.h"
#include "pages/welcomepage.h"
#include "timing.h"
#include "widgets/animatedmark.h"
#include "widgets/confettioverlay.h"
#include "widgets/gifbadge.h"
#include "widgets/progresstrack.h"
#include "widgets/radiooption.h"
#include "widgets/sealcheck.h"
#include "widgets/togglecheckbox.h"
#include "wizard/installerpane.h"
#include "wizard/steprow.h"

#include <QApplication>
#include <QPainter>
#include <QParallelAnimationGroup>
#include <QRandomGenerator>
#include <QSvgRenderer>
#include <QTimerEvent>

#include <array>
#include <cmath>
#include <cstdio>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int kRuns = 15;
constexpr int kFrames = 60;
constexpr double kFrameBudget = 16.6e-3; // s

QImage canvas(const QSize &size, double ratio)
{
    QImage image((QSizeF(size) * ratio).toSize(), QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(ratio);
    image.fill(Qt::white);
    return image;
}

/// Before each frame comes `move`, which is told the frame's number.
template <typename Move>
double frameSeconds(QWidget &widget, double ratio, Move move)
{
    QImage image = canvas(widget.size(), ratio);
    return medianSecondsPerStep(kRuns, kFrames, [&](int frame) {
        move(frame);
        widget.render(&image, {}, {}, QWidget::DrawChildren);
    });
}

/// A moment of the mark.
struct Moment
{
    const char *name;
    std::array<double, 4> entrance;
    double fill = 1.0;
};

/// The mark's scene with its drawings rendered anew.
void paintFromSvg(QImage &image, const std::array<std::unique_ptr<QSvgRenderer>, 4> &drawings,
                  const Moment &moment)
{
    const QRectF target(0, 5, 136, 100);
    constexpr std::array<QPointF, 4> kOffsets { QPointF(-90, 0), QPointF(90, 0), QPointF(0, 26),
                                                QPointF() };
    constexpr std::array kShrinking { 0.0, 0.0, 0.45, 0.7 };
    QPainter painter(&image);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    for (double opacity : { 0.13, 1.0 }) {
        if (opacity == 1.0 && moment.fill < 1.0)
            painter.setClipRect(target.adjusted(0, (1.0 - moment.fill) * target.height(), 0, 0));
        for (size_t i = 0; i < 4; ++i) {
            const double a = moment.entrance[i];
            if (a <= 0.001)
                continue;
            const double scale = 1.0 - (1.0 - a) * kShrinking[i];
            painter.save();
            painter.setOpacity(opacity * qMin(a, 1.0));
            painter.translate((1.0 - a) * kOffsets[i] + target.center());
            painter.scale(scale, scale);
            painter.translate(-target.center());
            drawings[i]->render(&painter, target);
            painter.restore();
        }
    }
}

/// The entrance takes 1080 ms in all.
constexpr Moment kMoments[] = {
    { "540 ms after replay", { 0.991, 0.929, 0.667, 0.0 } },
    { "800 ms after replay", { 1.0, 1.0, 1.044, 1.175 } },
    { "half full", { 1.0, 1.0, 1.0, 1.0 }, 0.5 },
};

void compareMark(const Moment &moment, double ratio)
{
    AnimatedMark mark;
    mark.resize(mark.sizeHint());
    mark.setA1Progress(moment.entrance[0]);
    mark.setA2Progress(moment.entrance[1]);
    mark.setA3Progress(moment.entrance[2]);
    mark.setA4Progress(moment.entrance[3]);
    mark.setFill(moment.fill);
    const std::array drawings {
        std::make_unique<QSvgRenderer>(u":/mark/left.svg"_s),
        std::make_unique<QSvgRenderer>(u":/mark/right.svg"_s),
        std::make_unique<QSvgRenderer>(u":/mark/centre.svg"_s),
        std::make_unique<QSvgRenderer>(u":/mark/triangle.svg"_s),
    };
    QImage ours = canvas(mark.size(), ratio);
    QImage svg = ours;
    const Comparison result = compareSteps(
        kRuns, kFrames, [&](int) { mark.render(&ours, {}, {}, QWidget::DrawChildren); },
        [&](int) { paintFromSvg(svg, drawings, moment); });
    std::printf(
        "mark, %-20s ratio %.0f   %7.3f ms   SVG in every frame %7.3f ms   %5.1f x faster\n",
        moment.name, ratio, result.ours * 1e3, result.other * 1e3, result.ratio);
}

struct Piece
{
    double angle, speed, width, height, rotation, spin;
};

void compareConfetti(double ratio)
{
    const QSize size(680, 474);
    constexpr int kTicks = 40; // all pieces still fly
    QWidget window;
    window.resize(size);
    ConfettiOverlay overlay(&window);
    auto *timer = overlay.findChild<QTimer *>();
    QImage image = canvas(size, ratio);
    const auto tick = [timer] {
        QTimerEvent event(timer->timerId());
        QCoreApplication::sendEvent(timer, &event);
    };

    // The same flight, worked out beforehand.
    std::vector<Piece> pieces(110);
    const auto random = [] { return QRandomGenerator::global()->generateDouble(); };
    for (Piece &piece : pieces)
        piece = { 6.28 * random(),  2.5 + 8 * random(), 4 + 5 * random(),
                  3 + 4 * random(), 6.28 * random(),    0.34 * (random() - 0.5) };
    std::vector<std::vector<QTransform>> places(kTicks, std::vector<QTransform>(pieces.size()));
    for (int t = 0; t < kTicks; ++t) {
        for (size_t i = 0; i < pieces.size(); ++i) {
            const Piece &piece = pieces[i];
            places[size_t(t)][i]
                .translate(260 + std::cos(piece.angle) * piece.speed * 1.3 * t,
                           80 + (std::sin(piece.angle) * piece.speed - 4.2) * t + 0.1 * t * t)
                .rotateRadians(piece.rotation + piece.spin * t);
        }
    }
    const Comparison result = compareSteps(
        kRuns, kTicks,
        [&](int t) {
            if (t == 0)
                overlay.burst({ 260, 80 }, { Qt::red, Qt::blue, Qt::green });
            tick();
            overlay.render(&image, {}, {}, QWidget::DrawChildren);
        },
        [&](int t) {
            QPainter painter(&image);
            painter.setRenderHint(QPainter::Antialiasing);
            painter.setOpacity(1.0 - t / 130.0);
            for (size_t i = 0; i < pieces.size(); ++i) {
                const Piece &piece = pieces[i];
                painter.setWorldTransform(places[size_t(t)][i]);
                painter.fillRect(
                    QRectF(-piece.width / 2, -piece.height / 2, piece.width, piece.height),
                    Qt::red);
            }
        });
    std::printf("confetti, 110 pieces      ratio %.0f   %7.3f ms   bare fillRect loop %7.3f ms   "
                "%5.2f x as long\n",
                ratio, result.ours * 1e3, result.other * 1e3, 1.0 / result.ratio);
}

template <typename Move>
void printFrame(const char *what, QWidget &widget, double ratio, Move move)
{
    const double seconds = frameSeconds(widget, ratio, move);
    std::printf("%-22s ratio %.0f   %7.3f ms   a frame at 60 Hz    %7.3f ms   %5.1f %%\n", what,
                ratio, seconds * 1e3, kFrameBudget * 1e3, 100 * seconds / kFrameBudget);
}

void printFrame(const char *what, QWidget &widget)
{
    for (double ratio : { 1.0, 2.0 })
        printFrame(what, widget, ratio, [](int) {});
}

/// From the first page of an installation to the next, half-way. Each frame is a millisecond on
/// from the last, as what stands still is not drawn anew. At the screen's own ratio, for which the
/// picture of the page that goes out is made.
void printPageChange()
{
    InstallerPane pane;
    pane.resize(484, 390);
    auto *welcome = new WelcomePage;
    auto *license = new LicensePage;
    pane.addPage(welcome);
    pane.addPage(license);
    pane.setCurrentPage(welcome, false);
    pane.show();
    pane.setCurrentPage(license, true);
    auto *change = pane.findChild<QParallelAnimationGroup *>();
    if (!change)
        qFatal("The pages do not move");
    change->pause();
    printFrame("change of pages", pane, pane.devicePixelRatioF(), [change](int frame) {
        change->setCurrentTime((change->duration() - kFrames) / 2 + frame);
    });
}

} // namespace

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    registerApplicationFonts();
    if (QApplication::arguments().contains(u"pages"_s)) {
        printPageChange();
        return 0;
    }
    for (double ratio : { 1.0, 2.0 }) {
        for (const Moment &moment : kMoments)
            compareMark(moment, ratio);
        compareConfetti(ratio);
    }
    AnimatedMark mark;
    mark.resize(mark.sizeHint());
    for (auto set : { &AnimatedMark::setA1Progress, &AnimatedMark::setA2Progress,
                      &AnimatedMark::setA3Progress, &AnimatedMark::setA4Progress })
        (mark.*set)(1.0);
    mark.setDriftOffset(-1.7);
    printFrame("mark, floating", mark);
    RadioOption radio(u"I accept the license agreement"_s);
    radio.resize(440, 30);
    radio.setSelectProgress(0.5);
    radio.setHoverProgress(0.5);
    printFrame("radio option", radio);
    ToggleCheckbox toggle(u"Create a desktop shortcut"_s);
    toggle.resize(440, 32);
    toggle.setCheckProgress(0.5);
    toggle.setHoverProgress(0.5);
    printFrame("check box", toggle);
    ProgressTrack track;
    track.resize(440, 4);
    track.setValue(0.5);
    printFrame("progress track", track);
    SealCheck seal;
    seal.resize(seal.sizeHint());
    seal.setCircleProgress(0.9);
    seal.setCheckProgress(0.6);
    printFrame("seal", seal);
    GifBadge badge(u":/assets/bye.gif"_s, 64);
    badge.resize(badge.sizeHint());
    badge.setPopProgress(0.9);
    printFrame("badge", badge);
    SystemCheckPage::CheckRow finding(judgeDiskSpace(412'316'860'416, uR"(C:\)"_s), nullptr);
    finding.resize(440, 26);
    finding.setReveal(0.5);
    printFrame("finding", finding);
    StepList::StepRow step(u"Registering .sch and .pcb file types"_s, nullptr);
    step.resize(440, 22);
    step.setReveal(0.5);
    printFrame("step of a run", step);
    printPageChange();
}
