#include "widgets/notification.h"

#include <QAccessible>
#include <QString>
#include <QWidget>

#include <windows.h>

#include <uiautomationcore.h>

namespace {

HMODULE uiAutomation()
{
    static const HMODULE library =
        LoadLibraryExW(L"uiautomationcore.dll", nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32);
    return library;
}

template <typename Function>
Function *uiAutomationFunction(const char *name)
{
    return reinterpret_cast<Function *>(
        reinterpret_cast<void *>(GetProcAddress(uiAutomation(), name)));
}

/// A minimal provider to raise notifications from; Qt's own provider does everything else.
class WindowProvider final : public IRawElementProviderSimple
{
public:
    explicit WindowProvider(HWND window) : m_window(window) {}

    STDMETHOD(QueryInterface)(REFIID id, void **object) override
    {
        const bool isKnown = IsEqualIID(id, __uuidof(IUnknown))
            || IsEqualIID(id, __uuidof(IRawElementProviderSimple));
        *object = isKnown ? static_cast<IRawElementProviderSimple *>(this) : nullptr;
        if (!isKnown)
            return E_NOINTERFACE;
        AddRef();
        return S_OK;
    }
    STDMETHOD_(ULONG, AddRef)() override { return ULONG(InterlockedIncrement(&m_count)); }
    STDMETHOD_(ULONG, Release)() override
    {
        const LONG left = InterlockedDecrement(&m_count);
        if (left == 0)
            delete this;
        return ULONG(left);
    }

    STDMETHOD(get_ProviderOptions)(ProviderOptions *options) override
    {
        *options = ProviderOptions_ServerSideProvider;
        return S_OK;
    }
    STDMETHOD(GetPatternProvider)(PATTERNID, IUnknown **provider) override
    {
        *provider = nullptr;
        return S_OK;
    }
    STDMETHOD(GetPropertyValue)(PROPERTYID, VARIANT *value) override
    {
        value->vt = VT_EMPTY;
        return S_OK;
    }
    STDMETHOD(get_HostRawElementProvider)(IRawElementProviderSimple **provider) override
    {
        using FromWindow = HRESULT WINAPI(HWND, IRawElementProviderSimple **);
        const auto fromWindow = uiAutomationFunction<FromWindow>("UiaHostProviderFromHwnd");
        return fromWindow(m_window, provider);
    }

private:
    const HWND m_window;
    LONG m_count = 1; ///< screen readers ask from threads of their own
};

// NotificationKind and NotificationProcessing of the Windows SDK, which the compiler's headers
// lack.
constexpr int kOther = 4;
constexpr int kCurrentThenMostRecent = 4; // the notification being read is finished first

} // namespace

void notifyScreenReader(const QWidget &window, const QString &text)
{
    if (!QAccessible::isActive())
        return;
    // Windows 10 has it since its version 1709.
    using Raise = HRESULT WINAPI(IRawElementProviderSimple *, int, int, BSTR, BSTR);
    const auto raise = uiAutomationFunction<Raise>("UiaRaiseNotificationEvent");
    if (!raise)
        return;
    auto *provider = new WindowProvider(reinterpret_cast<HWND>(window.winId()));
    BSTR const words = SysAllocString(reinterpret_cast<const wchar_t *>(text.utf16()));
    BSTR const activity = SysAllocString(L"run");
    raise(provider, kOther, kCurrentThenMostRecent, words, activity);
    SysFreeString(activity);
    SysFreeString(words);
    provider->Release();
}
