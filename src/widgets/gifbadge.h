#pragma once

#include "widgets/onscreenwatcher.h"

#include <QHash>
#include <QMovie>
#include <QPixmap>
#include <QPropertyAnimation>
#include <QTransform>
#include <QWidget>

/// A round badge that plays an animated GIF on a white disc and can pop in. If the picture cannot
/// be read, there is only the disc with its ring.
class GifBadge : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(double popProgress READ popProgress WRITE setPopProgress)

public:
    /// Plays `fileName` from its first frame as soon as it is painted; `side` in pixels.
    GifBadge(const QString &fileName, int side, QWidget *parent = nullptr);

    /// Opacity and scale, 0 to 1, above 1 while it overshoots. 1 at first: a badge is visible
    /// without pop().
    [[nodiscard]] double popProgress() const { return m_popProgress; }
    void setPopProgress(double progress);

    /// Pops the badge in from nothing.
    void pop();

    [[nodiscard]] QSize sizeHint() const override { return { m_side, m_side }; }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    void showFrame(int number);
    void updatePlayback();
    void paintPopping(QPainter &painter);
    void paintAtRest(QPainter &painter);
    /// The disc with the movie's current frame, for m_discSize and m_discTransform.
    [[nodiscard]] QPixmap discAtRest(double ratio);
    /// Paints the movie's current frame on white, not yet cut to the disc. `ratio` is the screen's,
    /// also while the painter is scaled.
    void paintPicture(QPainter &painter, double ratio);
    /// The movie's current frame, scaled to cover the badge; null without a frame.
    [[nodiscard]] QPixmap scaledFrame(double ratio);

    int m_side;
    QMovie m_movie;
    bool m_wasStarted = false;
    int m_shownFrame = -1;
    QPixmap m_scaled; ///< the last result of scaledFrame()
    qint64 m_scaledFrom = 0; ///< cache key of its frame
    /// By frame number: the movie loops, and clipping and scaling a frame takes long.
    QHash<int, QPixmap> m_discs;
    QSize m_discSize;
    QTransform m_discTransform;
    OnScreenWatcher m_onScreen;
    double m_popProgress = 1.0;
    QPropertyAnimation m_popAnimation;
};
