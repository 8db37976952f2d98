#pragma once

#include <QTimer>

class QWidget;

/// Tells screen readers how a run goes. No control that could have the focus shows that, so each
/// text is a notification of the application. The next one waits until the last one has been
/// spoken; of several changes in the meantime only the latest is announced.
class Announcer : public QObject
{
    Q_OBJECT

public:
    explicit Announcer(QWidget *window);

    /// Starts announcing. The first text waits as long as it takes to speak `spoken`, which the
    /// screen reader says on its own.
    void start(const QString &spoken);
    /// Stops announcing and drops the texts that wait.
    void stop();
    [[nodiscard]] bool isRunning() const { return m_isRunning; }

    /// Announce a text if it has changed; the step comes first if both have.
    void tellStep(const QString &step);
    void tellStatus(const QString &status);

    /// The last announcement.
    [[nodiscard]] QString text() const { return m_text; }

private:
    struct Topic
    {
        QString latest;
        QString said;
    };
    void tell(Topic &topic, const QString &text);
    void sayNews();
    void pauseFor(const QString &spoken);

    QWidget *const m_window;
    bool m_isRunning = false;
    Topic m_step;
    Topic m_status;
    QString m_text;
    QTimer m_speaking { this }; ///< runs while the last text is being spoken
};
