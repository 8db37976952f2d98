// Makes Windows trust what somebody signs:
//
//   trustcertificate <certificate in DER>

#include <windows.h>

#include <wincrypt.h>

#include <cstdio>
#include <vector>

int wmain(int count, wchar_t **arguments)
{
    std::FILE *file = count == 2 ? _wfopen(arguments[1], L"rb") : nullptr;
    if (!file)
        return 2;
    std::vector<BYTE> certificate(65536);
    certificate.resize(std::fread(certificate.data(), 1, certificate.size(), file));
    std::fclose(file);
    const HCERTSTORE store =
        CertOpenStore(CERT_STORE_PROV_SYSTEM_W, 0, 0, CERT_SYSTEM_STORE_LOCAL_MACHINE, L"ROOT");
    const bool isAdded = store
        && CertAddEncodedCertificateToStore(store, X509_ASN_ENCODING, certificate.data(),
                                            DWORD(certificate.size()), CERT_STORE_ADD_ALWAYS,
                                            nullptr);
    return isAdded && CertCloseStore(store, 0) ? 0 : 1;
}
