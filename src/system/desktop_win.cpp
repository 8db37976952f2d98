#include "system/desktop.h"

#include <QAbstractNativeEventFilter>
#include <QCoreApplication>
#include <QWindow>

#include <memory>

#include <windows.h>

#include <shobjidl.h>

namespace {

/// The task bar counts in whole numbers.
constexpr ULONGLONG kWhole = 10000;

/// Windows asks processes of a higher level first. This is what each has, and the highest that it
/// leaves to applications (SetProcessShutdownParameters).
constexpr DWORD kUsualShutdownLevel = 0x280;
constexpr DWORD kFirstShutdownLevel = 0x3ff;

struct ReleaseInterface
{
    void operator()(IUnknown *object) const { object->Release(); }
};

HWND handleOf(const QWindow &window)
{
    return reinterpret_cast<HWND>(window.winId());
}

/// Windows sends this when the window's task bar button has been created, and again after Explorer
/// was restarted.
UINT buttonMessage()
{
    static const UINT message = RegisterWindowMessageW(L"TaskbarButtonCreated");
    return message;
}

class WindowsDesktop : public Desktop, private QAbstractNativeEventFilter
{
public:
    void setBlockReason(QWindow &window, const QString &reason) override
    {
        // The engine has no window and could not say no: it must not be asked first.
        SetProcessShutdownParameters(reason.isEmpty() ? kUsualShutdownLevel : kFirstShutdownLevel,
                                     0);
        if (reason.isEmpty())
            ShutdownBlockReasonDestroy(handleOf(window));
        else
            ShutdownBlockReasonCreate(handleOf(window),
                                      reinterpret_cast<const wchar_t *>(reason.utf16()));
    }

    void keepAwake(bool on) override
    {
        SetThreadExecutionState(on ? ES_CONTINUOUS | ES_SYSTEM_REQUIRED : ES_CONTINUOUS);
    }

    void showOnTaskBar(QWindow &window, Button button, double fraction) override
    {
        const bool isFirst = !m_window;
        m_window = handleOf(window);
        m_button = button;
        m_fraction = fraction;
        if (isFirst) {
            // The task bar runs without administrator rights, so its message would be held back.
            ChangeWindowMessageFilterEx(m_window, buttonMessage(), MSGFLT_ALLOW, nullptr);
            QCoreApplication::instance()->installNativeEventFilter(this);
            connectToTaskBar();
        }
        update();
        if (button == Button::Plain) {
            QCoreApplication::instance()->removeNativeEventFilter(this);
            m_taskBar.reset();
            m_window = nullptr;
        }
    }

private:
    bool nativeEventFilter(const QByteArray &, void *data, qintptr *) override
    {
        const auto *message = static_cast<const MSG *>(data);
        if (message->hwnd == m_window && message->message == buttonMessage()) {
            connectToTaskBar();
            update();
        }
        return false;
    }

    void connectToTaskBar()
    {
        ITaskbarList3 *taskBar = nullptr;
        if (FAILED(CoCreateInstance(CLSID_TaskbarList, nullptr, CLSCTX_INPROC_SERVER,
                                    IID_PPV_ARGS(&taskBar))))
            return;
        m_taskBar.reset(taskBar);
        if (FAILED(taskBar->HrInit()))
            m_taskBar.reset();
    }

    void update()
    {
        if (!m_taskBar)
            return; // there is none, as in a session without a shell
        // The value first: SetProgressValue() alone also sets the normal state.
        switch (m_button) {
        case Button::Plain:
            m_taskBar->SetProgressState(m_window, TBPF_NOPROGRESS);
            break;
        case Button::Waiting:
            m_taskBar->SetProgressState(m_window, TBPF_INDETERMINATE);
            break;
        case Button::Progress:
            m_taskBar->SetProgressValue(m_window, ULONGLONG(m_fraction * kWhole), kWhole);
            m_taskBar->SetProgressState(m_window, TBPF_NORMAL);
            break;
        case Button::Failure:
            // All of the button, since a bar that has not begun could not turn red.
            m_taskBar->SetProgressValue(m_window, kWhole, kWhole);
            m_taskBar->SetProgressState(m_window, TBPF_ERROR);
            break;
        }
    }

    HWND m_window = nullptr; ///< of the run that is shown
    Button m_button = Button::Plain;
    double m_fraction = 0.0;
    std::unique_ptr<ITaskbarList3, ReleaseInterface> m_taskBar; ///< null while no run is shown
};

} // namespace

Desktop &systemDesktop()
{
    static WindowsDesktop desktop;
    return desktop;
}
