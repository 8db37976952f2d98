#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

/// Just enough JSON to change one entry of somebody else's file and give the rest back unchanged:
/// members keep their order, numbers and the three words keep their spelling.
namespace standin::json {

struct Value;
struct Member;

using Array = std::vector<Value>;
using Object = std::vector<Member>;

/// A number, true, false or null, as it was written.
struct Literal
{
    std::string text;
};

struct Value
{
    std::variant<Literal, std::string, Array, Object> content;
};

struct Member
{
    std::string name;
    Value value;
};

/// Nothing if the text is not one whole JSON value.
[[nodiscard]] std::optional<Value> parse(std::string_view text);

/// Indented by four blanks a level, with a final newline.
[[nodiscard]] std::string write(const Value &value);

/// The text as a JSON string with its quotes, UTF-8 left as it is.
[[nodiscard]] std::string quoted(std::string_view text);

} // namespace standin::json
