#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace standin {

/// One file of the application, by its path below the install folder with '/' between the parts.
struct PayloadFile
{
    std::string path;
    std::size_t size;
};

/// A few dozen files in folders, the shape of a real desktop application; its executable first.
[[nodiscard]] std::vector<PayloadFile> samplePayload();

/// Any number of tiny files, the application's executable first.
[[nodiscard]] std::vector<PayloadFile> numberedPayload(std::size_t count);

/// The same bytes for the same file on every run: text where the name says text, noise elsewhere.
[[nodiscard]] std::string contentOf(const PayloadFile &file);

} // namespace standin
