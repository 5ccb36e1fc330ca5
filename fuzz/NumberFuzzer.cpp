// The number readers and the number writer against the C library.
#include "FuzzInput.h"
#include "PlainNumbers.h"

#include <cstring>
#include <vector>

using namespace Tracelyn;

namespace {

void CheckReaders(std::string_view text) {
    const std::string broken = DifferenceFromPlainNumber(text);
    Require(broken.empty(), broken.c_str());
}

void CheckWriter(float value, int precision) {
    const std::string broken = DifferenceFromPlainText(value, precision);
    Require(broken.empty(), broken.c_str());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string_view text = TextOf(data, size);
    CheckReaders(text);
    // The same without a terminator behind it, for reads past the end.
    const std::vector<char> exact(text.begin(), text.end());
    CheckReaders({exact.data(), exact.size()});

    float value = 0;
    int precision = 0;
    if (size >= sizeof value + sizeof precision) {
        std::memcpy(&value, data, sizeof value);
        std::memcpy(&precision, data + sizeof value, sizeof precision);
        CheckWriter(value, precision);
        CheckWriter(value, precision % 16);
        CheckWriter(support::ParseFloatField(text), precision % 1100);
    }
    return 0;
}
