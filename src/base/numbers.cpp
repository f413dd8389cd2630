// The number and string syntax of option values.
#include "base/numbers.h"

#include "base/fields.h"
#include "base/options.h"
#include "base/text.h"

#include <cstring>

int32_t Radix = 10;
int32_t BRAXerrorcount = 0;

char escapedchar(char c) {
    constexpr char names[] = "bfnrt";
    const char *name = strchr(names, c);
    return name != nullptr ? "\b\f\n\r\t"[name - names] : c;
}

uint32_t suffixradix(char c) {
    c = lowerchar(c);
    return c == 'b' ? 2 : c == 'd' ? 10 : c == 'h' ? 16 : c == 'o' || c == 'q' ? 8 : 0;
}

namespace {

enum NUMBERERROR {
    OCTALTOOLARGE = 1,
    DIGITINESCAPE = 2,
    LEADINGBACKSLASH = 3,
    NOCLOSINGQUOTE = 4,
    TOOMANYCHARACTERS = 5,
    EMPTYTEXT = 6,
    TOOMANYDECIMALS = 7,
    TOOMANYHEXDIGITS = 8,
    TOOMANYDIGITS = 9,
    NOTANUMBER = 10
};

// Copies a string out of a text; characters that do not fit are dropped.
struct STRINGREADER {
    const char *p;
    char *destination;
    int length;
};

void put(STRINGREADER *reader, char c) {
    if (reader->length < BRAXFIELDSIZE - 1)
        reader->destination[reader->length++] = c;
}

// Reads an escape, after its backslash.
void readescape(STRINGREADER *reader) {
    const char c = *reader->p;
    if (isoctal(c)) {
        int value = 0;
        for (int digits = 0; digits < 3 && isoctal(*reader->p); ++digits)
            value = value * 8 + (*reader->p++ - '0');
        if (value > 255)
            BRAXerrorcount = OCTALTOOLARGE;
        if (*reader->p == '8' || *reader->p == '9')
            BRAXerrorcount = DIGITINESCAPE;
        put(reader, static_cast<char>(value));
        return;
    }
    if (c == 0)
        return;
    if (c == '8' || c == '9')
        BRAXerrorcount = DIGITINESCAPE;
    put(reader, escapedchar(c));
    ++reader->p;
}

// Reads from after the opening quote to after the closing one or the end of the text.
void readquoted(STRINGREADER *reader, char quote) {
    while (*reader->p != 0) {
        const char c = *reader->p++;
        if (c == quote) {
            if (*reader->p != quote)
                return;
            ++reader->p;
            put(reader, c);
        } else if (c == '\\' && quote == '"') {
            readescape(reader);
        } else {
            put(reader, c);
        }
    }
}

void readunquoted(STRINGREADER *reader) {
    if (*reader->p == '\\') {
        BRAXerrorcount = LEADINGBACKSLASH;
        ++reader->p;
    }
    while (*reader->p != 0 && !isblankchar(*reader->p) && *reader->p != ';' && *reader->p != ',')
        put(reader, *reader->p++);
    if (reader->length > 0 && reader->destination[reader->length - 1] == '\\')
        --reader->length;
}

// Copies a string and returns its length. *end receives the position after it.
int readstring(char *destination, const char *text, const char **end) {
    STRINGREADER reader = {text, destination, 0};
    if (*text == '"' || *text == '\'') {
        ++reader.p;
        readquoted(&reader, *text);
    } else {
        readunquoted(&reader);
    }
    destination[reader.length] = 0;
    *end = reader.p;
    return reader.length;
}

int32_t characterconstant(const char *text) {
    char characters[BRAXFIELDSIZE];
    const char *end = nullptr;
    const int length = readstring(characters, text, &end);
    if (end - text < 2 || (end[-1] != '"' && end[-1] != '\'')) {
        BRAXerrorcount = NOCLOSINGQUOTE;
        return 0;
    }
    if (length > 4) {
        BRAXerrorcount = TOOMANYCHARACTERS;
        return 0;
    }
    uint32_t value = 0;
    for (int i = 0; i < length; ++i)
        value = value << 8 | static_cast<unsigned char>(characters[i]);
    return static_cast<int32_t>(value);
}

uint32_t digitvalue(char c) {
    if (isdigitchar(c))
        return static_cast<uint32_t>(c - '0');
    return static_cast<unsigned char>((c | 32) - 87);
}

bool isdigitof(char c, uint32_t radix) {
    return radix == 10 ? isdigitchar(c) : radix == 16 ? ishexdigit(c) : digitvalue(c) < radix;
}

// The digits at the start of a text.
struct DIGITS {
    uint32_t value;
    size_t consumed;
};

DIGITS readdigits(const char *text, size_t length, uint32_t radix) {
    DIGITS digits = {0, 0};
    int count = 0;
    for (size_t i = 0; i < length; ++i) {
        if (isdigitof(text[i], radix)) {
            digits.value = digits.value * radix + digitvalue(text[i]);
            ++count;
        } else if (text[i] != '_' || radix == 10) {
            break;
        } else if (radix == 16 && (count == 0 || text[i - 1] == '_' || i + 1 == length ||
                                   !isdigitof(text[i + 1], radix))) {
            break; // a hexadecimal number takes only a single '_' between digits
        }
        digits.consumed = i + 1;
    }
    if (radix == 10 && count > 10)
        BRAXerrorcount = TOOMANYDECIMALS;
    else if (radix == 16 && count > 8)
        BRAXerrorcount = TOOMANYHEXDIGITS;
    else if (radix != 10 && count > 32)
        BRAXerrorcount = TOOMANYDIGITS;
    return digits;
}

int32_t controlcharacter(const char *text, size_t length) {
    if (length == 2 && text[0] == '^') {
        const int value = (static_cast<unsigned char>(text[1]) | 32) - 96;
        if (value >= 0 && value <= 26)
            return value;
    }
    BRAXerrorcount = NOTANUMBER;
    return 0;
}

// The rest of a number. A sign, a radix before '$' and a suffix each need another round.
struct NUMBER {
    const char *text;
    size_t length;
    uint32_t radix;
    bool negative;
};

// Reads one round. Returns true when *value is final, false when another round is needed.
bool readround(NUMBER *number, uint32_t *value) {
    const char *text = number->text;
    const size_t length = number->length;
    *value = 0;
    if (length == 0) {
        BRAXerrorcount = EMPTYTEXT;
        return true;
    }
    if (charvalue(text[0]) > '@' && number->radix <= 10) {
        *value = static_cast<uint32_t>(controlcharacter(text, length));
        return true;
    }
    if (text[0] == '-') {
        *number = {text + 1, length - 1, number->radix, !number->negative};
        return false;
    }
    if (length == 1) {
        *value = digitvalue(text[0]) < number->radix
                     ? digitvalue(text[0])
                     : static_cast<uint32_t>(controlcharacter(text, length));
        return true;
    }
    if (text[0] == '"' || text[0] == '\'') {
        *value = static_cast<uint32_t>(characterconstant(text));
        return true;
    }
    size_t prefix = 0;
    const uint32_t radix = prefixradix(text, number->radix, &prefix);
    const DIGITS digits = readdigits(text + prefix, length - prefix, radix);
    const size_t consumed = prefix + digits.consumed;
    *value = digits.value;
    if (consumed == length)
        return true;
    if (text[consumed] == '$' && digits.value >= 2 && digits.value <= 34) {
        *number = {text + consumed + 1, length - consumed - 1, digits.value, number->negative};
        return false;
    }
    const uint32_t suffix = isdigitchar(text[0]) ? suffixradix(text[length - 1]) : 0;
    if (suffix != 0) {
        *number = {text, length - 1, suffix, number->negative};
        return false;
    }
    *value = static_cast<uint32_t>(controlcharacter(text, length));
    return true;
}

} // namespace

int32_t BRAX_getnum(const char *text) {
    NUMBER number = {text, strlen(text), static_cast<uint32_t>(Radix), false};
    uint32_t value = 0;
    while (!readround(&number, &value)) {
    }
    return static_cast<int32_t>(number.negative ? 0 - value : value);
}

const char *BRAX_getstring(char *destination, const char *text) {
    const char *end = nullptr;
    readstring(destination, text, &end);
    return end;
}

bool BRAX_isdigit(const char *text) {
    if (*text == '-')
        ++text;
    if (isdigitchar(*text))
        return true;
    BRAXerrorcount = 0;
    return BRAX_getnum(text) != 0 && BRAXerrorcount == 0;
}

bool BRAX_isnumber(const char *text) {
    if (*text == '-')
        ++text;
    while (isdigitchar(*text))
        ++text;
    return *text == 0 || *text == ' ' || *text == ';';
}
