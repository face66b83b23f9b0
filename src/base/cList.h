#pragma once

#include <cstdint>
#include <limits>
#include <memory>
#include <utility>
#include <vector>

#include "base/Numbers.h"
#include "base/cError.h"

namespace kd {

/// Most records that a position of 16 bits can reach; the system's limit for variables, views and lines.
inline constexpr std::int32_t MostRecords = std::numeric_limits<std::int16_t>::max();

/// The ordered list behind all record lists: positions count from 1, no keys, duplicates allowed. Records are
/// shared: one that was handed out outlives Clear and the list. Walk it with a range-for (over shared
/// pointers).
template <typename T>
class cList {
public:
    using Record = std::shared_ptr<T>;

    /// Replaces the inner list by a new, empty one.
    void Clear() { m_records = {}; }

    /// @throws cError(errInvalidArgument) for a position outside 1..Count(); cError(errOverflow) above 32767,
    /// even if the list has more records.
    Record Item(std::int32_t position) const { return m_records[Index(position)]; }

    /// A text that is a number is a position ("12"). Any other text is a key, which no record has.
    Record Item(std::string_view text) const { return m_records[Index(PositionOf(text))]; }
    Record Item(const char* text) const { return Item(std::string_view(text)); }

    /// The record at a position as a loan, good while the list holds it. Errors as for Item.
    T& Ref(std::int32_t position) const { return *m_records[Index(position)]; }

    std::int32_t Count() const noexcept { return static_cast<std::int32_t>(m_records.size()); }

    /// Takes any position, above 32767 too.
    /// @throws cError(errInvalidArgument) for a position outside 1..Count().
    void Remove(std::int32_t position) {
        m_records.erase(m_records.begin() + static_cast<std::ptrdiff_t>(Offset(position)));
    }
    /// Unlike Item, takes every text for a key, "3" too, and no record has one.
    /// @throws cError(errInvalidArgument) always.
    [[noreturn]] void Remove(std::string_view /*key*/) { throw cError(errInvalidArgument, "cList.Remove"); }

    auto begin() const noexcept { return m_records.begin(); }
    auto end() const noexcept { return m_records.end(); }

    void Reserve(std::int32_t count) { m_records.reserve(static_cast<std::size_t>(count)); }

protected:
    cList() = default;
    ~cList() = default;
    cList(const cList&) = delete;
    cList& operator=(const cList&) = delete;

    Record Append(Record record) {
        m_records.push_back(std::move(record));
        return m_records.back();
    }

private:
    std::size_t Index(std::int32_t position) const {
        if (position > MostRecords || position < -MostRecords - 1) {
            throw cError(errOverflow, "cList.Item");
        }
        return Offset(position);
    }

    std::size_t Offset(std::int32_t position) const {
        if (position < 1 || position > Count()) {
            throw cError(errInvalidArgument, "cList.Item");
        }
        return static_cast<std::size_t>(position - 1);  // only here from 0
    }

    static std::int32_t PositionOf(std::string_view text) {
        if (!IsNumber(text, '.')) {
            throw cError(errInvalidArgument, "cList.Item");
        }
        return ToInt16(ToDouble(text, '.'));
    }

    std::vector<Record> m_records;
};

}  // namespace kd
