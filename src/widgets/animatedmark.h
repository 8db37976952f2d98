#pragma once

#include "widgets/delayedstart.h"

#include <QPixmap>
#include <QPropertyAnimation>
#include <QWidget>

#include <array>
#include <memory>

/// The product's mark. It assembles itself from four parts, fills with a run's progress over a
/// faint ghost of itself, and floats while nothing runs. It lies in the contents rectangle; the
/// margins around that are room for the parts that slide in from the sides.
///
/// The parts are rasterised once per size and pixel ratio; every frame only moves, scales and fades
/// those pictures. The assembled mark is rasterised too, once for each fraction of a pixel by which
/// it floats.
class AnimatedMark : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(double a1Progress READ a1Progress WRITE setA1Progress)
    Q_PROPERTY(double a2Progress READ a2Progress WRITE setA2Progress)
    Q_PROPERTY(double a3Progress READ a3Progress WRITE setA3Progress)
    Q_PROPERTY(double a4Progress READ a4Progress WRITE setA4Progress)
    Q_PROPERTY(double driftOffset READ driftOffset WRITE setDriftOffset)

public:
    explicit AnimatedMark(QWidget *parent = nullptr);

    /// Empties the widget and plays the entrance, also while one is playing.
    void replay();

    /// Height of the coloured part, 0 to 1 from the bottom; clamped.
    [[nodiscard]] double fill() const { return m_fill; }
    void setFill(double level);

    /// Starts and stops the floating. Starting it twice does not restart it; stopping it puts the
    /// mark back in its place.
    void startIdle();
    void stopIdle();

    /// Entrance of each part: 0 invisible, 1 in place, above 1 while it overshoots.
    [[nodiscard]] double a1Progress() const { return m_entrance[0]; }
    [[nodiscard]] double a2Progress() const { return m_entrance[1]; }
    [[nodiscard]] double a3Progress() const { return m_entrance[2]; }
    [[nodiscard]] double a4Progress() const { return m_entrance[3]; }
    void setA1Progress(double progress) { setEntrance(0, progress); }
    void setA2Progress(double progress) { setEntrance(1, progress); }
    void setA3Progress(double progress) { setEntrance(2, progress); }
    void setA4Progress(double progress) { setEntrance(3, progress); }

    /// Vertical offset of the whole mark in pixels.
    [[nodiscard]] double driftOffset() const { return m_driftOffset; }
    void setDriftOffset(double offset);

    [[nodiscard]] QSize sizeHint() const override { return { 136, 110 }; }

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    static constexpr size_t kParts = 4;

    /// Steps of the floating mark from one device pixel to the next, a power of two.
    static constexpr int kStepsPerPixel = 8;

    /// One part or all of them, in their place.
    struct Picture
    {
        QPixmap pixmap; ///< in device pixels, cut to what is visible
        QPointF topLeft; ///< in the widget
    };

    void setEntrance(size_t part, double progress);
    void updateDrift();
    void updatePicture();
    /// Whether the entrance is over: all parts are in place.
    [[nodiscard]] bool isAssembled() const;
    /// The drift in steps, at the pixel ratio that was last painted with.
    [[nodiscard]] int driftSteps() const;
    [[nodiscard]] QRectF targetRect() const;
    /// `count` parts from `first` on, `down` device pixels below their place.
    [[nodiscard]] Picture rasterized(size_t first, size_t count, double down) const;
    void rasterizeFor(double ratio);
    /// Paints the mark once in the opacity that a layer of `colour` on a layer of `ghost` has.
    void paintMark(QPainter &painter, double ghost, double colour);
    void paintParts(QPainter &painter, double ghost, double colour);
    void paintPicture(QPainter &painter, const Picture &picture) const;

    std::array<double, kParts> m_entrance {};
    double m_driftOffset = 0.0;
    double m_fill = 1.0;
    bool m_idle = false;
    std::array<QPropertyAnimation, kParts> m_entranceAnimations;
    std::array<std::unique_ptr<DelayedStart>, kParts> m_entranceDelays;
    QPropertyAnimation m_driftAnimation;
    OnScreenWatcher m_onScreen;
    // Rasterised when they are first painted, so that the first frame does not wait for all.
    std::array<Picture, kParts> m_parts;
    std::array<Picture, kStepsPerPixel> m_wholes; ///< by step
    double m_rasterRatio = 0.0; ///< pixel ratio of the pictures; 0 before they are made
};
