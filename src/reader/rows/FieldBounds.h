// Finds where the fields of sample rows end, many characters at once.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace Tracelyn {

// The fields of a text that is made of whole rows.
class CFieldBounds {
public:
    // The longest text.
    static constexpr size_t kMaxBytes = 1 << 14;
    // So many bytes behind the text are looked at, whatever they are.
    static constexpr size_t kReadableBehind = 64;

    // Finds the ends of all fields, which are commas and line feeds. Returns the length of the text's whole
    // rows: those up to its last line feed. 0 when it has none.
    size_t Find(std::string_view text);

    size_t GetRows() const { return m_nRows; }
    // The number of fields in each row, 0 when they differ.
    size_t GetFieldsPerRow() const { return m_nFieldsPerRow; }
    // Whether every row has a carriage return before its line feed.
    bool AllHaveReturns() const { return m_bReturns; }

    // Where each field begins, from the first field of the first row on, and one more as if another row
    // followed. A field ends one before the next one begins.
    const uint16_t* GetBegins() const { return m_Begins.data(); }

private:
    // Stores where the fields behind the first one begin, and counts the rows; at most a block too many is
    // looked at. Returns the end of what it stored.
    uint16_t* FindEnds(size_t size, uint16_t* next);
    void CompareRows(size_t fields);

    static constexpr size_t kBlockBytes = 64;

    const char* m_pText = nullptr;
    size_t m_nRows = 0;
    size_t m_nFieldsPerRow = 0;
    bool m_bReturns = false;
    std::array<uint16_t, kMaxBytes + kBlockBytes + 1> m_Begins{};
};

} // namespace Tracelyn
