#include "page/pagetext.h"

namespace {

// Returns the length of the UTF-8 character at the start of the text, which is not empty; 0 when
// there is none.
size_t characterlength(std::string_view text) {
    const auto byte = [&](size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned first = byte(0);
    if (first < 0x80)
        return 1;
    const size_t length = first >= 0xF0 ? 4 : first >= 0xE0 ? 3 : 2;
    if (first < 0xC2 || first > 0xF4 || length > text.size())
        return 0;
    // Overlong forms, surrogates and numbers above 0x10FFFF are not characters.
    const unsigned low = first == 0xE0 ? 0xA0 : first == 0xF0 ? 0x90 : 0x80;
    const unsigned high = first == 0xED ? 0x9F : first == 0xF4 ? 0x8F : 0xBF;
    if (byte(1) < low || byte(1) > high)
        return 0;
    for (size_t i = 2; i < length; ++i) {
        if ((byte(i) & 0xC0) != 0x80)
            return 0;
    }
    return length;
}

void putlatin(OUTPUT *out, unsigned char byte) {
    const char character[] = {static_cast<char>(0xC0 | byte >> 6),
                              static_cast<char>(0x80 | (byte & 0x3F))};
    puttext(out, character, sizeof character);
}

// Writes the text. `isplain` selects the ASCII characters that are written as they are, and
// `escape` writes the others.
template <typename PLAIN, typename ESCAPE>
void putescaped(OUTPUT *out, std::string_view text, PLAIN isplain, ESCAPE escape) {
    while (!text.empty()) {
        size_t plain = 0;
        while (plain < text.size() && isplain(text[plain]))
            ++plain;
        puttext(out, text.data(), plain);
        text.remove_prefix(plain);
        if (text.empty())
            return;
        const size_t length = characterlength(text);
        if (length == 0)
            putlatin(out, static_cast<unsigned char>(text[0]));
        else if (length == 1)
            escape(text[0]);
        else
            puttext(out, text.data(), length);
        text.remove_prefix(length > 0 ? length : 1);
    }
}

} // namespace

void putjson(OUTPUT *out, std::string_view text) {
    const auto isplain = [](char c) {
        return c >= ' ' && c <= '~' && c != '"' && c != '\\' && c != '<';
    };
    puttexts(out, "\"");
    putescaped(out, text, isplain, [&](char c) {
        constexpr char digits[] = "0123456789abcdef";
        const char code[] = {'\\', 'u', '0', '0', digits[c >> 4], digits[c & 15]};
        const char pair[] = {'\\', c == '\n' ? 'n' : c};
        if (c == '"' || c == '\\' || c == '\n')
            puttext(out, pair, sizeof pair);
        else
            puttext(out, code, sizeof code);
    });
    puttexts(out, "\"");
}

void putmarkup(OUTPUT *out, std::string_view text) {
    const auto isplain = [](char c) { return c >= 0 && c != '&' && c != '<' && c != '>'; };
    putescaped(out, text, isplain, [&](char c) {
        puttexts(out, c == '&' ? "&amp;" : c == '<' ? "&lt;" : "&gt;");
    });
}
