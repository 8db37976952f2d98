#include "registration.h"

#include "files.h"
#include "json.h"
#include "platform.h"
#include "product.h"
#include "text.h"

#include <algorithm>

namespace fs = std::filesystem;

namespace standin {

namespace {

fs::path registryFile()
{
    return toPath(platform::environment("VARNEL_REGISTRY_JSON"));
}

/// A missing or empty file is an empty registry.
json::Object readRegistry()
{
    const std::string text = readFile(registryFile()).value_or(std::string());
    if (trimmed(text).empty())
        return {};
    auto value = json::parse(text);
    if (!value || !std::holds_alternative<json::Object>(value->content)) {
        throw FileError("Setup was unable to read the registry file \"" + toUtf8(registryFile())
                        + "\": it holds no JSON object.");
    }
    return std::get<json::Object>(std::move(value->content));
}

void writeRegistry(json::Object registry)
{
    replaceFile(registryFile(), json::write({ std::move(registry) }));
}

/// Names in a registry ignore letter case.
template <typename Members>
auto findMember(Members &members, std::string_view name)
{
    return std::ranges::find_if(members, [name](const json::Member &member) {
        return sameIgnoringCase(member.name, name);
    });
}

json::Value &memberOf(json::Object &object, std::string_view name, json::Value fallback)
{
    auto found = findMember(object, name);
    if (found == object.end())
        found = object.insert(found, { std::string(name), std::move(fallback) });
    return found->value;
}

std::string textOf(const json::Object &object, std::string_view name)
{
    const auto found = findMember(object, name);
    if (found == object.end() || !std::holds_alternative<std::string>(found->value.content))
        return {};
    return std::get<std::string>(found->value.content);
}

std::string withTrailingSeparator(const fs::path &folder)
{
    return toUtf8(folder / "");
}

} // namespace

fs::path registeredFolder()
{
    if (registryFile().empty())
        return {};
    const json::Object registry = readRegistry();
    for (const std::string_view key : product::kRegistryKeys) {
        const auto entry = findMember(registry, key);
        if (entry == registry.end() || !std::holds_alternative<json::Object>(entry->value.content))
            continue;
        const auto &values = std::get<json::Object>(entry->value.content);
        fs::path folder = toPath(trimmed(textOf(values, "InstallLocation")));
        if (folder.is_absolute())
            return folder;
    }
    return {};
}

void registerProduct(const fs::path &folder)
{
    if (registryFile().empty())
        return;
    json::Object registry = readRegistry();
    json::Value &entry = memberOf(registry, product::kRegistryKeys.front(), { json::Object() });
    if (!std::holds_alternative<json::Object>(entry.content))
        entry.content = json::Object();
    auto &values = std::get<json::Object>(entry.content);
    const auto set = [&values](std::string_view name, const std::string &text) {
        memberOf(values, name, {}).content = text;
    };
    set("DisplayName", std::string(product::kName) + " version " + std::string(product::kVersion));
    set("DisplayVersion", std::string(product::kVersion));
    set("Publisher", std::string(product::kPublisher));
    set("InstallLocation", withTrailingSeparator(folder));
    set("UninstallString", '"' + toUtf8(folder / product::kUninstaller) + '"');
    writeRegistry(std::move(registry));
}

void unregisterProduct(const std::string &key)
{
    if (registryFile().empty() || key.empty())
        return;
    json::Object registry = readRegistry();
    const auto found = findMember(registry, key);
    if (found == registry.end())
        return;
    registry.erase(found);
    writeRegistry(std::move(registry));
}

} // namespace standin
