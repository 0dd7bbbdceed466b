/* SPDX-License-Identifier: Apache-2.0 */
#include <algorithm>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include "importing/readers.h"
#include "text/wording.h"

namespace algdata
{

namespace
{

using Json = nlohmann::json;

/* The types of JSON values that are not objects or arrays. */
enum class Form { Null, Truth, Number, Text };

/* What a key names: a field of the layout, by its index, or one of these, which follow the fields. */
enum Member : size_t { KindMember, SourceMember, EntriesMember, NoMember };

/* A JSON object that is being read: a record or an entry. */
struct Object {
    const Layout* layout = nullptr;
    std::vector<Token>* cells = nullptr;
    std::vector<bool> seen; /* by member: whether its key occurred */
    size_t member = 0;      /* the member of the current key */

    void begin(const Layout& of, std::vector<Token>& into)
    {
        layout = &of;
        cells = &into;
        cells->assign(of.columns.size(), Token());
        seen.assign(of.fields.size() + NoMember, false);
    }
    bool isField() const { return member < layout->fields.size(); }
    bool is(Member other) const { return member == layout->fields.size() + other; }
    const Field& field() const { return layout->fields[member]; }
    size_t column(size_t element) const { return layout->placeOf[member][element]; }
};

/*
 * Receives the events of the parser and adds each record to the import when it is
 * complete. Only one record is in memory, and there is no recursion, so large and
 * deeply nested texts are safe.
 */
class JsonRecords : public nlohmann::json_sax<Json>
{
  public:
    JsonRecords(std::string_view whole, const std::string& sourceName, Incoming& incoming)
        : text(whole), name(sourceName), in(incoming)
    {
    }

    /* Parses the whole text, or one line of it. */
    void parse(std::string_view part);

    bool null() override { return value("null", Form::Null); }
    bool boolean(bool truth) override { return value(truth ? "true" : "false", Form::Truth); }
    bool number_integer(number_integer_t number) override
    {
        /* The parser calls this only for numbers with a minus, so zero was written as -0. */
        return value(number == 0 ? "-0" : std::to_string(number), Form::Number);
    }
    bool number_unsigned(number_unsigned_t number) override
    {
        return value(std::to_string(number), Form::Number);
    }
    bool number_float(number_float_t /* value */, const string_t& digits) override
    {
        return value(digits, Form::Number);
    }
    bool string(string_t& characters) override { return value(characters, Form::Text); }
    bool binary(binary_t& /* bytes */) override { return false; } /* JSON has none */
    bool start_object(size_t elements) override;
    bool key(string_t& key) override;
    bool end_object() override;
    bool start_array(size_t elements) override;
    bool end_array() override;
    bool parse_error(size_t position, const std::string& token,
                     const nlohmann::detail::exception& error) override;

  private:
    enum class In { Nothing, List, Object, Values, Entries };

    bool value(std::string_view characters, Form form);
    bool accepts(Form form) const;
    bool skip(const char* what);
    void refuseValue(const std::string& what);
    void refuse(const std::string& field, const std::string& why) { in.refuse(where() + field, why); }
    void fill(size_t first);
    size_t memberNamed(std::string_view key) const;
    std::string where() const;

    const std::string_view text;
    const std::string& name;
    Incoming& in;

    std::string_view parsed; /* the text or the line that is being parsed */
    In place = In::Nothing;
    bool listed = false; /* the records are in an array */
    size_t skipped = 0;  /* open objects and arrays of a value that is ignored */
    size_t element = 0;  /* index in the array of a field */
    Record record;
    Texts texts;
    Object head;
    Object entry;
    Object* object = &head; /* the innermost open object */
};

void JsonRecords::parse(std::string_view part)
{
    parsed = part;
    place = In::Nothing;
    listed = false;
    Json::sax_parse(part.begin(), part.end(), this);
}

bool JsonRecords::parse_error(size_t position, const std::string& token,
                              const nlohmann::detail::exception& error)
{
    constexpr int numberOutOfRange = 406; /* the library's error number */
    const size_t begin = static_cast<size_t>(parsed.data() - text.data());
    const std::string_view before = text.substr(0, begin + std::min(position, parsed.size() + 1) - 1);
    throw Failure(fmt::format("{}:{}:{}: {}: {}", name, std::count(before.begin(), before.end(), '\n') + 1,
                              before.size() - (before.rfind('\n') + 1) + 1,
                              error.id == numberOutOfRange ? "number out of range" : "invalid JSON",
                              position > parsed.size() ? "the text ends too early" : inQuotes(token)));
}

/* "singlePat.2." for a field of an entry. */
std::string JsonRecords::where() const
{
    return object == &entry ? fmt::format("{}.{}.", in.kind().entries.name, record.entries.size() - 1) : "";
}

/* ---- Objects ------------------------------------------------------------ */

bool JsonRecords::start_object(size_t /* elements */)
{
    if (skipped != 0 || place == In::Object || place == In::Values)
        return skip("an object");
    if (place == In::Entries) {
        entry.begin(in.kind().entry, record.entries.emplace_back());
        object = &entry;
    } else {
        texts = Texts();
        record.entries.clear();
        head.begin(in.kind().head, record.cells);
    }
    place = In::Object;
    return true;
}

/* Most objects have their keys in the same order, so the search begins after the previous key. */
size_t JsonRecords::memberNamed(std::string_view key) const
{
    const size_t fields = object->layout->fields.size();
    for (size_t i = 0; i < fields; ++i) {
        const size_t at = (object->member + 1 + i) % fields;
        if (key == object->layout->fields[at].name)
            return at;
    }
    if (object == &entry)
        return fields + NoMember;
    return fields + (key == "kind"                                             ? KindMember
                     : key == "source"                                         ? SourceMember
                     : in.kind().hasEntries() && key == in.kind().entries.name ? EntriesMember
                                                                               : NoMember);
}

bool JsonRecords::key(string_t& key)
{
    if (skipped != 0)
        return true;
    object->member = memberNamed(key);
    if (object->is(NoMember)) {
        refuse(inQuotes(key), fmt::format("{} has no such field", in.kind().name));
    } else if (object->seen[object->member]) {
        refuse(key, "duplicate");
        object->member = object->layout->fields.size() + NoMember;
    } else {
        object->seen[object->member] = true;
    }
    return true;
}

bool JsonRecords::end_object()
{
    if (skipped != 0) {
        --skipped;
    } else if (object == &entry) {
        object = &head;
        place = In::Entries;
    } else {
        if (in.kind().hasEntries() && !object->seen[object->layout->fields.size() + EntriesMember])
            refuse(in.kind().entries.name, "missing");
        in.add(record);
        place = listed ? In::List : In::Nothing;
    }
    return true;
}

/* ---- Arrays ------------------------------------------------------------- */

bool JsonRecords::start_array(size_t /* elements */)
{
    const bool inObject = skipped == 0 && place == In::Object;
    if (skipped == 0 && place == In::Nothing) {
        listed = true;
        place = In::List;
    } else if (inObject && object->is(EntriesMember)) {
        place = In::Entries;
    } else if (inObject && object->isField() && object->field().count > 1) {
        place = In::Values;
        element = 0;
    } else {
        return skip("a list");
    }
    return true;
}

bool JsonRecords::end_array()
{
    if (skipped != 0) {
        --skipped;
        return true;
    }
    if (place == In::Values && element != object->layout->placeOf[object->member].size()) {
        refuse(object->field().name,
               fmt::format("a list of {}, expected {}", plural(element, "value"), object->field().count));
        fill(element);
    }
    place = place == In::List ? In::Nothing : In::Object;
    return true;
}

/* ---- Values ------------------------------------------------------------- */

/* Whether a value of this type is expected here. */
bool JsonRecords::accepts(Form form) const
{
    const bool single = place == In::Object && object->isField() && object->field().count == 1;
    const bool listedToo = place == In::Values && element < object->layout->placeOf[object->member].size();
    return (single || listedToo) && form == (object->field().type == Type::Mac ? Form::Text : Form::Number);
}

bool JsonRecords::value(std::string_view characters, Form form)
{
    if (skipped != 0)
        return true;
    const bool missing =
        form == Form::Null && (place == In::Values || (place == In::Object && !object->is(EntriesMember)));
    const bool ofThisKind = place == In::Object && object->is(KindMember) && characters == in.kind().name;
    const bool unused = place == In::Object && (object->is(SourceMember) || object->is(NoMember));
    if (accepts(form))
        (*object->cells)[object->column(place == In::Values ? element : 0)] =
            texts.add(std::string(characters));
    else if (!missing && !ofThisKind && !unused)
        refuseValue(
            inQuotes(form == Form::Text ? fmt::format("\"{}\"", characters) : std::string(characters)));
    element += place == In::Values ? 1 : 0;
    return true;
}

/* Ignores an array or an object that is not expected here. */
bool JsonRecords::skip(const char* what)
{
    if (skipped++ != 0)
        return true;
    refuseValue(what);
    element += place == In::Values ? 1 : 0;
    return true;
}

/* Refuses a value of the wrong type. */
void JsonRecords::refuseValue(const std::string& what)
{
    const size_t number = in.count() + 1;
    if (place == In::Nothing || place == In::List)
        throw Failure(fmt::format("record {} is {}, expected an object", number, what));
    if (place == In::Entries)
        throw Failure(fmt::format("record {}, {}.{} is {}, expected an object", number,
                                  in.kind().entries.name, record.entries.size(), what));
    if (object->is(KindMember))
        refuse("kind", fmt::format("{}, expected {}", what, in.kind().name));
    if (object->is(EntriesMember))
        refuse(in.kind().entries.name, fmt::format("{}, expected a list", what));
    if (!object->isField())
        return;
    const Field& field = object->field();
    if (place == In::Values && element >= static_cast<size_t>(field.count))
        return; /* end_array() reports that the list is too long */
    if (place == In::Object && field.count > 1)
        refuse(field.name, fmt::format("{}, expected a list of {} values", what, field.count));
    else
        refuse(object->layout->columns[object->column(place == In::Values ? element : 0)].name,
               fmt::format("{}, expected {}", what,
                           field.type == Type::Mac   ? "12 hexadecimal digits in quotation marks"
                           : field.type == Type::F32 ? "a number"
                                                     : "a whole number"));
    fill(place == In::Values ? element : 0);
}

/* Fills the cells of a refused value, so that they are not also reported as missing. */
void JsonRecords::fill(size_t first)
{
    const std::vector<size_t>& columns = object->layout->placeOf[object->member];
    const Token harmless = object->field().type == Type::Mac ? "000000000000" : "0";
    for (size_t i = first; i < columns.size(); ++i)
        (*object->cells)[columns[i]] = harmless;
}

} // namespace

bool isJson(std::string_view text)
{
    return Json::accept(text);
}

void readJson(std::string_view text, const std::string& name, Incoming& in)
{
    JsonRecords(text, name, in).parse(text);
}

void readNdjson(std::string_view text, const std::string& name, Incoming& in)
{
    JsonRecords records(text, name, in);
    Lines lines(text);
    Line line;
    while (lines.next(line))
        if (!isBlank(line.text))
            records.parse(line.text);
}

} // namespace algdata
