#include "json.h"

#include <algorithm>
#include <cstdint>

namespace standin::json {

namespace {

constexpr int kDeepestNesting = 200;

void appendUtf8(std::string &text, std::uint32_t code)
{
    const auto put = [&text](std::uint32_t byte) { text += static_cast<char>(byte); };
    if (code < 0x80) {
        put(code);
    } else if (code < 0x800) {
        put(0xC0 | (code >> 6));
        put(0x80 | (code & 0x3F));
    } else if (code < 0x10000) {
        put(0xE0 | (code >> 12));
        put(0x80 | ((code >> 6) & 0x3F));
        put(0x80 | (code & 0x3F));
    } else {
        put(0xF0 | (code >> 18));
        put(0x80 | ((code >> 12) & 0x3F));
        put(0x80 | ((code >> 6) & 0x3F));
        put(0x80 | (code & 0x3F));
    }
}

/// Reads from the front of what is left; every function returns nothing at the first fault.
class Reader
{
public:
    explicit Reader(std::string_view text) : m_rest(text) {}

    std::optional<Value> wholeText()
    {
        auto result = value(0);
        skipBlanks();
        return m_rest.empty() ? result : std::nullopt;
    }

private:
    void skipBlanks()
    {
        m_rest.remove_prefix(std::min(m_rest.find_first_not_of(" \t\r\n"), m_rest.size()));
    }

    /// Takes the mark if it comes next, blanks before it included.
    bool take(char mark)
    {
        skipBlanks();
        if (!m_rest.starts_with(mark))
            return false;
        m_rest.remove_prefix(1);
        return true;
    }

    std::optional<Value> value(int depth)
    {
        if (depth > kDeepestNesting)
            return {};
        if (take('{'))
            return object(depth);
        if (take('['))
            return array(depth);
        if (take('"'))
            return wrapped(string());
        return wrapped(literal());
    }

    template <typename Content>
    static std::optional<Value> wrapped(std::optional<Content> content)
    {
        return content ? std::optional(Value { std::move(*content) }) : std::nullopt;
    }

    std::optional<Value> object(int depth)
    {
        Object members;
        if (take('}'))
            return Value { members };
        do {
            if (!take('"'))
                return {};
            auto name = string();
            if (!name || !take(':'))
                return {};
            auto content = value(depth + 1);
            if (!content)
                return {};
            members.push_back({ std::move(*name), std::move(*content) });
        } while (take(','));
        return take('}') ? std::optional(Value { std::move(members) }) : std::nullopt;
    }

    std::optional<Value> array(int depth)
    {
        Array elements;
        if (take(']'))
            return Value { elements };
        do {
            auto element = value(depth + 1);
            if (!element)
                return {};
            elements.push_back(std::move(*element));
        } while (take(','));
        return take(']') ? std::optional(Value { std::move(elements) }) : std::nullopt;
    }

    /// After the opening quote.
    std::optional<std::string> string()
    {
        std::string text;
        while (!m_rest.empty()) {
            const char c = m_rest.front();
            m_rest.remove_prefix(1);
            if (c == '"')
                return text;
            if (static_cast<unsigned char>(c) < 0x20)
                return {};
            if (c != '\\')
                text += c;
            else if (!escape(text))
                return {};
        }
        return {};
    }

    bool escape(std::string &text)
    {
        constexpr std::string_view kNames = "\"\\/bfnrt";
        constexpr std::string_view kMeanings = "\"\\/\b\f\n\r\t";
        if (m_rest.empty())
            return false;
        const char name = m_rest.front();
        m_rest.remove_prefix(1);
        if (name == 'u')
            return unicodeEscape(text);
        const auto which = kNames.find(name);
        if (which == std::string_view::npos)
            return false;
        text += kMeanings[which];
        return true;
    }

    /// A lone surrogate has no UTF-8 form and is refused.
    bool unicodeEscape(std::string &text)
    {
        const auto isHigh = [](std::uint32_t unit) { return unit >= 0xD800 && unit < 0xDC00; };
        const auto isLow = [](std::uint32_t unit) { return unit >= 0xDC00 && unit < 0xE000; };

        const auto unit = fourHexDigits();
        if (!unit || isLow(*unit))
            return false;
        if (!isHigh(*unit)) {
            appendUtf8(text, *unit);
            return true;
        }
        if (!m_rest.starts_with("\\u"))
            return false;
        m_rest.remove_prefix(2);
        const auto second = fourHexDigits();
        if (!second || !isLow(*second))
            return false;
        appendUtf8(text, 0x10000 + ((*unit - 0xD800) << 10) + (*second - 0xDC00));
        return true;
    }

    std::optional<std::uint32_t> fourHexDigits()
    {
        constexpr std::string_view kDigits = "0123456789abcdef0123456789ABCDEF";
        if (m_rest.size() < 4)
            return {};
        std::uint32_t number = 0;
        for (const char c : m_rest.substr(0, 4)) {
            const auto digit = kDigits.find(c);
            if (digit == std::string_view::npos)
                return {};
            number = number * 16 + static_cast<std::uint32_t>(digit % 16);
        }
        m_rest.remove_prefix(4);
        return number;
    }

    /// Strict about words, easy about numbers: whatever is spelt like one is kept as it is.
    std::optional<Literal> literal()
    {
        constexpr std::string_view kSpelling = "+-.0123456789abcdefghijklmnopqrstuvwxyzE";
        const auto length = std::min(m_rest.find_first_not_of(kSpelling), m_rest.size());
        const std::string_view text = m_rest.substr(0, length);
        const bool isWord = text == "true" || text == "false" || text == "null";
        const bool isNumber = !text.empty()
            && (text[0] == '-' || (text[0] >= '0' && text[0] <= '9'))
            && text.find_first_not_of("+-.0123456789eE") == std::string_view::npos;
        if (!isWord && !isNumber)
            return {};
        m_rest.remove_prefix(length);
        return Literal { std::string(text) };
    }

    std::string_view m_rest;
};

std::string written(const Value &value, const std::string &indent);

template <typename Items, typename WriteItem>
std::string block(char open, char close, const Items &items, const std::string &indent,
                  WriteItem writeItem)
{
    if (items.empty())
        return { open, close };
    const std::string inner = indent + "    ";
    std::string text(1, open);
    for (const auto &item : items)
        text += (text.size() == 1 ? "\n" : ",\n") + inner + writeItem(item, inner);
    return text + '\n' + indent + close;
}

struct Writer
{
    const std::string &indent;

    std::string operator()(const Literal &literal) const { return literal.text; }
    std::string operator()(const std::string &text) const { return quoted(text); }
    std::string operator()(const Array &array) const
    {
        return block('[', ']', array, indent, written);
    }
    std::string operator()(const Object &object) const
    {
        return block('{', '}', object, indent, [](const Member &member, const std::string &inner) {
            return quoted(member.name) + ": " + written(member.value, inner);
        });
    }
};

std::string written(const Value &value, const std::string &indent)
{
    return std::visit(Writer { indent }, value.content);
}

} // namespace

std::optional<Value> parse(std::string_view text)
{
    constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
    if (text.starts_with(kByteOrderMark))
        text.remove_prefix(kByteOrderMark.size());
    return Reader(text).wholeText();
}

std::string write(const Value &value)
{
    return written(value, {}) + '\n';
}

std::string quoted(std::string_view text)
{
    constexpr std::string_view kHexDigits = "0123456789abcdef";
    std::string result = "\"";
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (c == '"' || c == '\\')
            (result += '\\') += c;
        else if (byte < 0x20)
            ((result += "\\u00") += kHexDigits[byte / 16]) += kHexDigits[byte % 16];
        else
            result += c;
    }
    return result + '"';
}

} // namespace standin::json
