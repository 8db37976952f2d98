#include "uninstalllist.h"

#include "files.h"
#include "json.h"

#include <algorithm>
#include <string_view>

namespace fs = std::filesystem;

namespace standin {

namespace {

using Paths = std::vector<fs::path>;

constexpr std::string_view kFolder = "folder";
constexpr std::string_view kFiles = "files";
constexpr std::string_view kFolders = "folders";
constexpr std::string_view kShortcuts = "shortcuts";
constexpr std::string_view kRegistryKey = "registryKey";

void addMissing(Paths &paths, const Paths &more)
{
    // Sorted copy: an update of many files must not compare each with each.
    Paths known = paths;
    std::ranges::sort(known);
    std::ranges::copy_if(more, std::back_inserter(paths), [&known](const fs::path &path) {
        return !std::ranges::binary_search(known, path);
    });
}

json::Value toJson(const Paths &paths)
{
    json::Array array;
    for (const fs::path &path : paths)
        array.push_back({ toUtf8(path) });
    return { std::move(array) };
}

template <typename Content>
const Content *member(const json::Object &object, std::string_view name)
{
    const auto found = std::ranges::find(object, name, &json::Member::name);
    return found == object.end() ? nullptr : std::get_if<Content>(&found->value.content);
}

Paths pathsOf(const json::Object &object, std::string_view name)
{
    Paths paths;
    if (const auto *array = member<json::Array>(object, name)) {
        for (const json::Value &value : *array) {
            if (const auto *text = std::get_if<std::string>(&value.content))
                paths.push_back(toPath(*text));
        }
    }
    return paths;
}

std::string textOf(const json::Object &object, std::string_view name)
{
    const auto *text = member<std::string>(object, name);
    return text ? *text : std::string();
}

} // namespace

void UninstallList::add(const UninstallList &earlier)
{
    addMissing(files, earlier.files);
    addMissing(folders, earlier.folders);
    addMissing(shortcuts, earlier.shortcuts);
}

std::optional<UninstallList> readUninstallList(const fs::path &file)
{
    const auto value = json::parse(readFile(file).value_or(std::string()));
    const auto *object = value ? std::get_if<json::Object>(&value->content) : nullptr;
    if (!object)
        return {};
    return UninstallList { .folder = toPath(textOf(*object, kFolder)),
                           .files = pathsOf(*object, kFiles),
                           .folders = pathsOf(*object, kFolders),
                           .shortcuts = pathsOf(*object, kShortcuts),
                           .registryKey = textOf(*object, kRegistryKey) };
}

void writeUninstallList(const fs::path &file, const UninstallList &list)
{
    writeFile(file,
              json::write({ json::Object {
                  { std::string(kFolder), { toUtf8(list.folder) } },
                  { std::string(kRegistryKey), { list.registryKey } },
                  { std::string(kShortcuts), toJson(list.shortcuts) },
                  { std::string(kFolders), toJson(list.folders) },
                  { std::string(kFiles), toJson(list.files) },
              } }));
}

} // namespace standin
