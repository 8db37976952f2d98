// Walks through a window's tree of UI Automation, as a screen reader does, and prints what
// everything in it is called, one "name=" a line, with its help text behind a bar:
//
//   uiautomation <title>

#include <windows.h>

#include <oleauto.h>

#include <cstdio>
#include <string>

namespace {

constexpr int kName = 30005;
constexpr int kHelpText = 30013;
constexpr int kNextSibling = 1;
constexpr int kFirstChild = 3;

// The client's side in C, of which the compiler's headers have nothing.
using Node = void *;
struct Condition
{
    int type; ///< 0: always true
};
struct CacheRequest
{
    const Condition *view;
    int scope;
    const int *properties;
    int propertyCount;
    const int *patterns;
    int patternCount;
    int mode;
};

HRESULT(WINAPI *nodeFromHandle)(HWND, Node *);
HRESULT(WINAPI *navigate)(Node, int, const Condition *, CacheRequest *, SAFEARRAY **, BSTR *);
HRESULT(WINAPI *nodeFromVariant)(VARIANT *, Node *);
HRESULT(WINAPI *getPropertyValue)(Node, int, VARIANT *);

template <typename Function>
void find(Function &function, const char *name)
{
    function = reinterpret_cast<Function>(
        reinterpret_cast<void *>(GetProcAddress(LoadLibraryW(L"uiautomationcore"), name)));
}

std::string text(Node node, int property)
{
    VARIANT value;
    VariantInit(&value);
    if (FAILED(getPropertyValue(node, property, &value)) || value.vt != VT_BSTR)
        return {};
    const int length = int(SysStringLen(value.bstrVal));
    std::string result(size_t(length) * 3, '\0');
    result.resize(size_t(WideCharToMultiByte(CP_UTF8, 0, value.bstrVal, length, result.data(),
                                             int(result.size()), nullptr, nullptr)));
    return result;
}

/// Null if there is nothing in that direction.
Node neighbour(Node node, int direction)
{
    const Condition always {};
    CacheRequest request { &always, 1, nullptr, 0, nullptr, 0, 1 };
    SAFEARRAY *data = nullptr;
    BSTR structure = nullptr;
    LONG first[2] {};
    VARIANT value;
    VariantInit(&value);
    Node result = nullptr;
    if (SUCCEEDED(navigate(node, direction, &always, &request, &data, &structure)) && data
        && SUCCEEDED(SafeArrayGetElement(data, first, &value)))
        nodeFromVariant(&value, &result);
    return result;
}

void print(Node node)
{
    std::printf("name=%s|%s\n", text(node, kName).c_str(), text(node, kHelpText).c_str());
    for (Node child = neighbour(node, kFirstChild); child; child = neighbour(child, kNextSibling))
        print(child);
}

} // namespace

int wmain(int count, wchar_t **arguments)
{
    const HWND window = count == 2 ? FindWindowW(nullptr, arguments[1]) : nullptr;
    if (!window)
        return 1;
    CoInitializeEx(nullptr, COINIT_MULTITHREADED);
    find(nodeFromHandle, "UiaNodeFromHandle");
    find(navigate, "UiaNavigate");
    find(nodeFromVariant, "UiaHUiaNodeFromVariant");
    find(getPropertyValue, "UiaGetPropertyValue");
    Node root = nullptr;
    const HRESULT result = nodeFromHandle(window, &root);
    std::printf("root=%lx\n", static_cast<unsigned long>(result));
    if (SUCCEEDED(result))
        print(root);
    return 0;
}
