#include "files/signature.h"

#include <QDir>
#include <QFileInfo>

#include <qt_windows.h>

#include <softpub.h>
#include <wincrypt.h>
#include <wintrust.h>

namespace {

/// A function of one of Windows' own libraries. They are loaded when a run starts: the first page
/// needs none of them.
template <typename Function>
Function systemFunction(const wchar_t *library, const char *name)
{
    HMODULE module = LoadLibraryExW(library, nullptr, LOAD_LIBRARY_SEARCH_SYSTEM32);
    return module
        ? reinterpret_cast<Function>(reinterpret_cast<void *>(GetProcAddress(module, name)))
        : nullptr;
}

QString commonName(const CERT_CONTEXT *certificate)
{
    const auto name =
        systemFunction<decltype(&CertGetNameStringW)>(L"crypt32.dll", "CertGetNameStringW");
    if (!name)
        return {};
    wchar_t text[256] = {};
    // NOLINTNEXTLINE(*-const-cast): the function takes the object's name as if it might change it
    name(certificate, CERT_NAME_ATTR_TYPE, 0, const_cast<char *>(szOID_COMMON_NAME), text,
         DWORD(std::size(text)));
    return QString::fromWCharArray(text);
}

QString signerOf(HANDLE state)
{
    const auto provider = systemFunction<decltype(&WTHelperProvDataFromStateData)>(
        L"wintrust.dll", "WTHelperProvDataFromStateData");
    const auto signer = systemFunction<decltype(&WTHelperGetProvSignerFromChain)>(
        L"wintrust.dll", "WTHelperGetProvSignerFromChain");
    if (!provider || !signer)
        return {};
    CRYPT_PROVIDER_DATA *data = provider(state);
    CRYPT_PROVIDER_SGNR *first = data ? signer(data, 0, FALSE, 0) : nullptr;
    return first && first->csCertChain > 0 ? commonName(first->pasCertChain[0].pCert) : QString();
}

} // namespace

bool isThisProgramSigned()
{
    // The first page of the image is the head of its file.
    constexpr qsizetype kHeadSize = 4096;
    const auto *image = reinterpret_cast<const char *>(GetModuleHandleW(nullptr));
    return certificateTableEnd(QByteArrayView(image, kHeadSize)) > 0;
}

QString trustedSigner(const QString &path)
{
    const auto verify =
        systemFunction<decltype(&WinVerifyTrust)>(L"wintrust.dll", "WinVerifyTrust");
    if (!verify)
        return {};
    const QString native = QDir::toNativeSeparators(QFileInfo(path).absoluteFilePath());
    WINTRUST_FILE_INFO file = {};
    file.cbStruct = sizeof file;
    file.pcwszFilePath = reinterpret_cast<const wchar_t *>(native.utf16());
    WINTRUST_DATA data = {};
    data.cbStruct = sizeof data;
    data.dwUIChoice = WTD_UI_NONE;
    data.fdwRevocationChecks = WTD_REVOKE_NONE;
    data.dwUnionChoice = WTD_CHOICE_FILE;
    data.pFile = &file;
    GUID action = WINTRUST_ACTION_GENERIC_VERIFY_V2;
    // The network may take long, and after a consent prompt, which has named the publisher, all
    // certificates are here. Without one, as in a deployment, Windows may have to fetch the root.
    for (const DWORD flags : { DWORD(WTD_CACHE_ONLY_URL_RETRIEVAL), DWORD(0) }) {
        data.dwProvFlags = flags;
        data.dwStateAction = WTD_STATEACTION_VERIFY;
        const bool isTrusted = verify(nullptr, &action, &data) == ERROR_SUCCESS;
        const QString name = isTrusted ? signerOf(data.hWVTStateData) : QString();
        data.dwStateAction = WTD_STATEACTION_CLOSE;
        verify(nullptr, &action, &data);
        if (!name.isEmpty())
            return name;
    }
    return {};
}
