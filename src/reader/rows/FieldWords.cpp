#include "reader/rows/FieldWords.h"

#include "reader/rows/FieldColumn.h"

#include <algorithm>

namespace Tracelyn {

namespace {

using field::kWordBytes;
using field::Word;

// Unless withHigh, `high` is not written, and the words of fields of more than eight characters have no
// meaning; with it, those of more than 16. Unless withSigns, a minus sign is a character like others.
template <bool withHigh, bool withSigns>
size_t LoadWords(const ColumnFields fields, size_t from, size_t count, FieldWords& words) {
    size_t longest = 0; // less one, so that no length is the largest
    const uint16_t* begins = fields.begins + from * fields.fieldsPerRow;
    Word* const low = words.low.data();
    Word* const high = words.high.data();
    uint32_t* const signs = words.signs.data();
    if constexpr (!withSigns)
        words.signs.fill(0);
    for (size_t i = 0; i < count; ++i) {
        const size_t begin = begins[0];
        const char* number = fields.text + begin;
        size_t length = begins[1] - begin - fields.endBytes;
        begins += fields.fieldsPerRow;
        if constexpr (withSigns) {
            const uint32_t negative = *number == '-' ? 1 : 0;
            signs[i] = negative << 31;
            number += negative;
            length -= negative;
        }
        if constexpr (withHigh) {
            longest = std::max(longest, length - 1);
            const bool isLong = length > kWordBytes;
            const Word before = field::LoadValues(number, length - kWordBytes);
            const char* const last = isLong ? number + (length - kWordBytes) : number;
            low[i] = field::LoadValues(last, std::min(length, kWordBytes));
            high[i] = isLong ? before : 0;
        } else {
            longest |= length - 1; // at most seven when none exceeds eight characters
            low[i] = field::LoadValues(number, length);
        }
    }
    for (size_t i = count; i % 4 != 0; ++i) {
        low[i] = low[count - 1];
        if constexpr (withHigh)
            high[i] = high[count - 1];
        signs[i] = 0;
    }
    return std::max(longest, longest + 1);
}

} // namespace

template <bool withSigns>
size_t LoadFields(bool isLong, size_t most, const ColumnFields& fields, size_t from, size_t count,
                  FieldWords& words) {
    size_t longest = 0;
    if (!isLong)
        longest = LoadWords<false, withSigns>(fields, from, count, words);
    if (isLong || (longest > kWordBytes && most > kWordBytes))
        longest = LoadWords<true, withSigns>(fields, from, count, words);
    return longest;
}

template size_t LoadFields<true>(bool, size_t, const ColumnFields&, size_t, size_t, FieldWords&);
template size_t LoadFields<false>(bool, size_t, const ColumnFields&, size_t, size_t, FieldWords&);

} // namespace Tracelyn
