/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Visits the fields of a record at compile time: every field is a type of its own,
 * so that the compiler unrolls the loop and inlines the visits. The benchmarks and
 * the comparison of the text layer use it. Other programs use the description at
 * run time, with access.h.
 */
#ifndef FORMATS_COMPILE_TIME_H
#define FORMATS_COMPILE_TIME_H

#include "access.h"
#include "formatStrings.h"

namespace formats
{

/* The sequence 0, 1, 2 ... as a type. */
template <size_t... all> struct Indices {
};
template <size_t left, size_t... all> struct IndicesTo : IndicesTo<left - 1, left - 1, all...> {
};
template <size_t... all> struct IndicesTo<0, all...> {
    using type = Indices<all...>;
};

/* The lines of a kind that this header can visit: of a record, or of an entry. */
enum class Part : uint8_t { Record, Entry };

constexpr const Layout& layoutOf(const Kind& kind, Part part)
{
    return part == Part::Record ? kind.record : kind.entries.layout;
}

template <Type type> struct ValueOf;
template <> struct ValueOf<Type::Mac> {
    using type = char[ALG_MAC_SIZE];
};
template <> struct ValueOf<Type::U8> {
    using type = uint8_t;
};
template <> struct ValueOf<Type::U16> {
    using type = uint16_t;
};
template <> struct ValueOf<Type::U32> {
    using type = uint32_t;
};
template <> struct ValueOf<Type::F32> {
    using type = float;
};

/* A member of a record, or of an entry. */
template <const Kind& kind, Part part, size_t at> struct Member {
    static constexpr const Field& field = layoutOf(kind, part).fields[at];
    using Value = typename ValueOf<field.type>::type;

    static Value& of(void* base, int element)
    {
        return *static_cast<Value*>(static_cast<void*>(addressOf(field, base, element)));
    }
    static const Value& of(const void* base, int element)
    {
        return *static_cast<const Value*>(static_cast<const void*>(addressOf(field, base, element)));
    }

    /* "rssi", or "rssi3" for an element. */
    struct Names {
        char text[field.count][48];
    };
    static constexpr Names names = [] {
        Names made = {};
        for (int element = 0; element < field.count; ++element) {
            char* to = made.text[element];
            for (const char* from = field.name; *from != '\0'; ++from)
                *to++ = *from;
            if (element >= 10)
                *to++ = static_cast<char>('0' + element / 10);
            if (field.count > 1)
                *to++ = static_cast<char>('0' + element % 10);
        }
        return made;
    }();
};

/* One call of the text layer: its members and its formats. */
template <const Kind& kind, Part part, size_t first> struct Call {
    static constexpr Step step = stepFrom(layoutOf(kind, part), first);
    static constexpr FormatString in = formatString(kind, layoutOf(kind, part), step, Direction::In);
    static constexpr FormatString out = formatString(kind, layoutOf(kind, part), step, Direction::Out);

    /* Returns `use(Member<...>{}...)` with all members. */
    template <typename Use> [[gnu::always_inline]] static auto with(Use&& use)
    {
        return withAll(use, typename IndicesTo<step.fields.size()>::type{});
    }

  private:
    template <typename Use, size_t... at>
    [[gnu::always_inline]] static auto withAll(Use&& use, Indices<at...>)
    {
        return use(Member<kind, part, first + at>{}...);
    }
};

/* Calls `visit(Call<...>{}, element)` for every call in order, until it returns false. */
template <const Kind& kind, Part part, size_t first = 0, typename Visit>
[[gnu::always_inline]] inline bool eachCall(Visit&& visit)
{
    if constexpr (first < layoutOf(kind, part).fields.size()) {
        using Current = Call<kind, part, first>;
        for (int element = 0; element < Current::step.times; ++element) {
            if (!visit(Current{}, element))
                return false;
        }
        return eachCall<kind, part, first + Current::step.fields.size()>(visit);
    }
    return true;
}

/* Calls `visit(Member<...>{}, element)` for every field in the order of the text. */
template <const Kind& kind, Part part, typename Visit>
[[gnu::always_inline]] inline void eachMember(Visit&& visit)
{
    eachCall<kind, part>([&visit](auto call, int element) {
        call.with([&visit, element](auto... member) { (visit(member, element), ...); });
        return true;
    });
}

/* entryCount() at compile time, for a kind that has entries. */
template <const Kind& kind> size_t entriesIn(const void* record)
{
    constexpr const Field& count = countField(kind);
    const uint32_t stated = number(count, record, 0);
    return stated < kind.entries.capacity ? stated : kind.entries.capacity;
}

} // namespace formats

#endif
