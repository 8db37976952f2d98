#pragma once

#include <string>
#include <string_view>
#include <vector>

/// Small text helpers; letter case means ASCII letters only.
namespace standin {

[[nodiscard]] std::string lower(std::string_view text);
[[nodiscard]] std::string_view trimmed(std::string_view text);
[[nodiscard]] bool sameIgnoringCase(std::string_view a, std::string_view b);

/// The trimmed, non-empty parts of a list with commas.
[[nodiscard]] std::vector<std::string> splitList(std::string_view text);

[[nodiscard]] std::string replaced(std::string text, std::string_view from, std::string_view to);

} // namespace standin
