#include "reader/rows/FieldNumber.h"

#include "support/Limits.h"
#include "support/NumberText.h"

#include <algorithm>
#include <limits>
#include <string_view>

namespace Tracelyn::field {

namespace {

// With more digits, a double does not hold every number.
constexpr size_t kExactDigits = 15;

constexpr uint64_t kEightDigits = 100'000'000;

std::string_view TextOf(const char* begin, const char* end) {
    return {begin, std::min(static_cast<size_t>(end - begin), support::limits::kMaxFieldBytes)};
}

} // namespace

float OddFloat(const char* begin, const char* end) {
    return begin == end ? 0.0F : support::ParseFloatField(TextOf(begin, end));
}

int32_t OddInteger(const char* begin, const char* end) {
    return begin == end ? 0 : support::ParseIntegerField(TextOf(begin, end));
}

float LongFloat(const char* begin, const char* number, const char* end) {
    const auto count = static_cast<size_t>(end - number);
    if (count > 2 * kWordBytes)
        return OddFloat(begin, end);
    Word low = LoadValues(end - kWordBytes, kWordBytes);
    Word high = LoadValues(number, count - kWordBytes);
    Word point = FindPoint(low);
    size_t decimals = DecimalsBehind(point);
    if (point != 0) {
        low = ClosePoint(low, point, high >> 56);
        high <<= 8;
    } else {
        point = FindPoint(high);
        high = ClosePoint(high, point, 0);
        decimals = DecimalsBehind(point) + kWordBytes;
    }
    if (count - (point == 0 ? 0 : 1) > kExactDigits || !AreDigits(low) || !AreDigits(high))
        return OddFloat(begin, end);
    const uint64_t value = NumberOf(high) * kEightDigits + NumberOf(low);
    return WithSign(static_cast<double>(static_cast<int64_t>(value)) / kDivisors[decimals], number != begin);
}

int32_t LongInteger(const char* begin, const char* number, const char* end) {
    const auto count = static_cast<size_t>(end - number);
    if (count > 2 * kWordBytes)
        return OddInteger(begin, end);
    const Word low = LoadValues(end - kWordBytes, kWordBytes);
    const Word high = LoadValues(number, count - kWordBytes);
    if (!AreDigits(low) || !AreDigits(high))
        return OddInteger(begin, end);
    const auto magnitude = static_cast<int64_t>(NumberOf(high) * kEightDigits + NumberOf(low));
    constexpr int64_t kLargest = std::numeric_limits<int32_t>::max();
    return static_cast<int32_t>(number != begin ? -std::min(magnitude, kLargest + 1)
                                                : std::min(magnitude, kLargest));
}

} // namespace Tracelyn::field
