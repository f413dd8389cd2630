#include "symbols/words.h"

#include "base/text.h"

#include <algorithm>
#include <charconv>

namespace {

template <int radix> bool takenumber(std::string_view *field, int32_t *number) {
    std::string_view text = *field;
    skipwhite(&text);
    const bool negative = takeprefix(&text, "-");
    if (!negative)
        takeprefix(&text, "+");
    if (radix == 16 && !takeprefix(&text, "0x"))
        takeprefix(&text, "0X");
    constexpr uint64_t beyond = uint64_t{1} << 32;
    uint64_t value = beyond; // from_chars leaves it so if the number is too large
    const char *end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data(), end, value, radix);
    *field = {rest, static_cast<size_t>(end - rest)};
    if (error == std::errc::invalid_argument)
        return false;
    *number = toint32((negative ? -1 : 1) * static_cast<int64_t>(std::min(value, beyond)));
    return true;
}

} // namespace

bool takeword(std::string_view *text, std::string_view *word) {
    skipwhite(text);
    const auto *end = std::find_if(text->begin(), text->end(), iswhite);
    *word = text->substr(0, static_cast<size_t>(end - text->begin()));
    text->remove_prefix(word->size());
    return !word->empty();
}

bool takedecimal(std::string_view *text, int32_t *number) {
    return takenumber<10>(text, number);
}

bool takehexadecimal(std::string_view *text, int32_t *number) {
    return takenumber<16>(text, number);
}
