#include "camera.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QPainter>
#include <QTest>

#include <cstdio>

using namespace Qt::Literals::StringLiterals;

namespace {

/// Longer than what fades in under the pointer.
constexpr int kHover = 300; // ms

const QColor kDesktop(0x88, 0x99, 0xaa);
constexpr int kMargin = 16; // px of desktop around the window

} // namespace

void wait(int milliseconds)
{
    QElapsedTimer clock;
    clock.start();
    do
        QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
    while (clock.elapsed() < milliseconds);
}

Camera::Camera(const QString &folder) : m_folder(folder)
{
    if (!m_folder.mkpath(u"."_s))
        qFatal("Cannot make %s", qPrintable(folder));
}

void Camera::open(RunMode mode)
{
    m_scene.open(mode);
    m_scene.window().activateWindow();
}

void Camera::goTo(PageId page)
{
    m_scene.goTo(page);
    wait(kSettled);
}

QImage Camera::picture()
{
    const double ratio = m_scene.window().devicePixelRatio();
    const QSize size = m_scene.window().size().grownBy({ kMargin, kMargin, kMargin, kMargin });
    QImage picture(size * ratio, QImage::Format_RGB32);
    picture.setDevicePixelRatio(ratio);
    picture.fill(kDesktop);
    QPainter painter(&picture);
    painter.drawPixmap(kMargin, kMargin, m_scene.window().grab());
    painter.end();
    return picture;
}

void Camera::save(const QImage &picture, const QString &name)
{
    const QString file = u"%1-%2.png"_s.arg(++m_count, 2, 10, QChar(u'0')).arg(name);
    if (!picture.save(m_folder.filePath(file)))
        qFatal("Cannot write %s", qPrintable(file));
}

void Camera::shoot(const QString &name)
{
    save(picture(), name);
}

void Camera::film(const QString &name, std::initializer_list<int> times)
{
    // Saved only afterwards: packing a picture takes longer than many an animation.
    QElapsedTimer clock;
    clock.start();
    QList<QImage> pictures;
    for (int time : times) {
        wait(int(qMax(time - clock.elapsed(), qint64(1))));
        pictures.append(picture());
    }
    for (qsizetype i = 0; i < pictures.size(); ++i) {
        const QString moment = u"%1-at-%2-ms"_s.arg(name).arg(times.begin()[i]);
        if (i > 0 && pictures[i] == pictures[i - 1])
            std::fprintf(stderr, "Nothing moves until %s\n", qPrintable(moment));
        save(pictures[i], moment);
    }
}

void Camera::hover(QWidget *widget, const QString &name)
{
    QWindow *window = m_scene.window().windowHandle();
    QTest::mouseMove(window, widget->mapTo(&m_scene.window(), widget->rect().center()));
    wait(kHover);
    shoot(name);
    QTest::mouseMove(window, QPoint(m_scene.window().width() / 2, m_scene.window().height() / 2));
    wait(kHover);
}

void Camera::tab(const QString &name, Qt::Key key)
{
    QTest::keyClick(m_scene.window().windowHandle(), key);
    wait(50);
    shoot(name);
}
