#include "reader/rows/FieldColumn.h"

#include "reader/rows/FieldNumber.h"
#include "reader/rows/WordNumbers.h"

#include <algorithm>
#include <array>
#include <type_traits>

namespace Tracelyn {

namespace {

struct Field {
    const char* begin;
    const char* end;
};

Field FieldIn(const ColumnFields& fields, size_t row) {
    const uint16_t* const begins = fields.begins + row * fields.fieldsPerRow;
    return {fields.text + begins[0], fields.text + begins[1] - fields.endBytes};
}

#ifdef __SSE2__

// Of a number with 1 to 7 of them; 0 of another.
size_t DecimalsOf(const Field& field) {
    const auto behind = static_cast<size_t>(field.end - std::find(field.begin, field.end, '.'));
    return 2 <= behind && behind <= 8 ? behind - 1 : 0;
}

// Reads with the decimals that the fields before had, as long as all have the same.
bool ReadFloats(const FieldWords& words, size_t count, ColumnHabit& habit, float* numbers) {
    if (habit.decimals > 0 && ReadNumbers(words, count, habit.isLong, habit.decimals, numbers))
        return true;
    if (!ReadNumbers(words, count, habit.isLong, numbers))
        return false;
    habit.differs = habit.differs || habit.decimals > 0;
    habit.decimals = 0;
    return true;
}

#endif

} // namespace

// False when any field is no plain decimal of a usual length; the numbers have no meaning then.
template <class T>
bool CFieldReader<T>::ReadAtOnce([[maybe_unused]] size_t from, [[maybe_unused]] std::span<T> numbers) {
#ifdef __SSE2__
    constexpr size_t kLongest = std::is_floating_point_v<T> ? 15 : field::kWordBytes;
    const size_t count = numbers.size();
    FieldWords words;
    const auto load = m_Habit.isSigned ? LoadFields<true> : LoadFields<false>;
    const size_t longest = load(m_Habit.isLong, kLongest, m_Fields, from, count, words);
    if (longest > kLongest)
        return false;
    m_Habit.isLong = longest > field::kWordBytes;
    std::array<T, kAtOnce> room;
    T* const read = count % 4 == 0 ? numbers.data() : room.data();
    bool isRead = false;
    if constexpr (std::is_floating_point_v<T>) {
        isRead = ReadFloats(words, count, m_Habit, read);
        if (isRead && m_Habit.decimals == 0 && !m_Habit.differs)
            m_Habit.decimals = DecimalsOf(FieldIn(m_Fields, from));
    } else {
        isRead = ReadNumbers(words, count, read);
    }
    if (read == room.data())
        std::copy_n(read, count, numbers.data());
    return isRead;
#else
    return false;
#endif
}

template <class T>
void CFieldReader<T>::Read(size_t from, std::span<T> numbers) {
    if (ReadAtOnce(from, numbers))
        return;
    if (!m_Habit.isSigned) {
        m_Habit.isSigned = true;
        if (ReadAtOnce(from, numbers))
            return;
    }
    for (T& number : numbers) {
        const Field field = FieldIn(m_Fields, from++);
        if constexpr (std::is_floating_point_v<T>)
            number = FloatOfField(field.begin, field.end);
        else
            number = IntegerOfField(field.begin, field.end);
    }
}

template class CFieldReader<float>;
template class CFieldReader<int32_t>;

} // namespace Tracelyn
