// The matcher: string, pattern and destination, each on a line of its own. The first byte
// chooses the entry point.
#include "fuzz.h"

#include "base/options.h"
#include "mem/galloc.h"
#include "wild/mathrules.h"
#include "wild/wild.h"

#include <cstring>

void fuzzmatch(const std::string &input) {
    if (input.empty())
        return;
    const auto choice = static_cast<unsigned char>(input[0]);
    const std::vector<std::string> texts = fuzzpieces(input.substr(1), '\n', 5);
    if (texts.size() < 3)
        return;
    const int64_t room = WILD_outputsize(texts[0].c_str(), texts[2].c_str());
    if (room > 1 << 20)
        return;
    const int held = galloccount;
    OPTverbose = choice >= 128 ? 6 : 0;
    for (size_t rule = 3; rule < texts.size(); ++rule)
        WILD_addmathrule(texts[rule].c_str());
    std::vector<char> output(static_cast<size_t>(room));
    int length = -1;
    const auto match = (choice & 8) != 0 ? matchpath : matchstring;
    const int result =
        match(output.data(), texts[0].c_str(), texts[1].c_str(), texts[2].c_str(),
              (choice & 1) != 0 ? &length : nullptr, choice >> 1 & 1, choice >> 2 & 1);
    fuzzrequire(result == 0 || result == 1, "a match is neither 0 nor 1");
    fuzzrequire(length >= -1 && length <= static_cast<int>(texts[0].size()),
                "a match is longer than the string");
    WILD_deletemathrules();
    fuzzrequire(galloccount == held, "a match kept memory");
}
