#pragma once

#include <QTimer>

/// Tells assistive technology how a run goes, which has no control that could take the focus: each
/// of its texts is a notification of the application, and is spoken. Nothing comes faster than it
/// can be spoken; what changes meanwhile is told in its latest state.
class Announcer : public QObject
{
    Q_OBJECT

public:
    explicit Announcer(QObject *parent);

    /// Says from now on what it is told. Waits as long as it takes to speak `spoken`, which is said
    /// otherwise.
    void start(const QString &spoken);
    /// Has nothing more to say, nor what was still to come.
    void stop();
    [[nodiscard]] bool isRunning() const { return m_isRunning; }

    /// Each says its text if it is another than before; the step first when both have changed.
    void tellStep(const QString &step);
    void tellStatus(const QString &status);

    /// What was said last.
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

    bool m_isRunning = false;
    Topic m_step;
    Topic m_status;
    QString m_text;
    QTimer m_speaking { this }; ///< as long as somebody is still listening to what came before
};
