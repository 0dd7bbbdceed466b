/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Parses record files: lines, fields, numbers and records. Nothing here rejects a file:
 * damaged lines are parsed as far as possible.
 */
#ifndef ALGDATA_RECORDS_H
#define ALGDATA_RECORDS_H

#include <deque>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "records/kinds.h"

namespace algdata
{

/* A part of the file's bytes, so that its place in the file is known. Null data means: missing. */
using Token = std::string_view;

inline bool present(Token token)
{
    return token.data() != nullptr;
}

/* White space for the formatted reads of the C library. */
inline bool isSpace(char c)
{
    return c == ' ' || (c >= '\t' && c <= '\r');
}
inline bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}
bool isHexDigit(char c);
bool isBlank(std::string_view text);

struct Line {
    std::string_view text; /* without its newline */
    size_t number = 0;     /* from 1 */
    bool ended = false;    /* a newline follows */
};

/* Returns the lines of a file one by one. */
class Lines
{
  public:
    explicit Lines(std::string_view bytes) : rest(bytes) {}
    /* Returns false after the last line. */
    bool next(Line& line);

  private:
    std::string_view rest;
    size_t number = 0;
};

/* Splits a line at white space. Stores at most `max` fields and returns the number of all. */
size_t split(std::string_view line, std::vector<Token>& tokens, size_t max);

/* A whole number in decimal. */
struct Number {
    bool negative = false;
    bool huge = false; /* does not fit 64 bits */
    uint64_t magnitude = 0;
};

/* The number that the whole text is, with an optional sign. */
std::optional<Number> wholeNumber(std::string_view text);

/* The value that a formatted read stores in the field. */
uint64_t readsAs(const Field& field, const Number& number);

/*
 * Whether the field can have the number: its type can store it, or the module's writer
 * prints it, which prints large numbers of some fields as negative ones.
 */
bool inRange(const Field& field, const Number& number);

/* The finite number that the whole text is, in decimal and with an optional sign. */
std::optional<double> decimalNumber(std::string_view text);

/* The value of a number field. Null if it is missing or damaged: it is not a number, or out of range. */
std::optional<double> numberIn(const Field& field, Token text);

/* The float that the whole text is, as a formatted read parses it: also nan and hexadecimal digits. */
std::optional<float> wholeFloat(std::string_view text);

/* Whether the text is a valid MAC: twelve hexadecimal digits. */
bool isMac(std::string_view text);

/* Whether a value that is not missing is damaged: no MAC, no number, or out of the field's range. */
bool isDamaged(const Field& field, Token text);

/* Whether the text is meant as a MAC, even if damaged: it is long or not a number. */
bool isMacLike(std::string_view text);

struct Record {
    size_t line = 0;                         /* number of its first line */
    size_t place = 0;                        /* for reading it again: its offset in the file, or its index */
    size_t index = 0;                        /* from 0, within the file */
    std::vector<Token> cells;                /* by column of the head */
    std::vector<std::vector<Token>> entries; /* by column of the entry */
    size_t wrongLines = 0;                   /* lines with a wrong number of fields */
};

/* Returns the records of a file one by one. */
class RecordReader
{
  public:
    RecordReader(const Kind& recordKind, std::string_view bytes);

    /* The record's tokens point into the file's bytes. Returns false after the last record. */
    bool next(Record& record);

    /* The number in the count line of a Devices file, after next(). Null if the file has none. */
    Token countLine() const { return stated; }

    /* Goes to the place of a record, so that next() returns it again. */
    void seek(size_t place);

  private:
    bool nextLine(Record& record);
    bool nextOfStream(Record& record);
    bool nextDevice(Record& record);
    bool nextIndex(Record& record);
    bool advance();
    Token peek();
    void startAt(const char* at, Record& record) const;
    void fillCells(std::vector<Token>& cells, const Layout& layout, Record& record);

    const Kind& kind;
    std::string_view all;
    Lines lines;
    Line line;
    std::vector<Token> tokens; /* of the current line */
    size_t found = 0;          /* fields of the current line, also those not stored */
    size_t offset = 0;         /* of the first byte of a stream that is not consumed */
    size_t count = 0;          /* records so far */
    Token stated;              /* in the count line */
    bool pending = false;      /* the current line is read but not consumed */
};

/* Whether a line of a Devices file is a device line, judged by its fields. */
bool beginsDevice(const std::vector<Token>& tokens, size_t found);

/* Whether a field of a stream begins the next record: it is a MAC. */
bool beginsStreamRecord(std::string_view token);

/* Stores texts for tokens that are not part of a file. */
class Texts
{
  public:
    Token add(std::string text) { return kept.emplace_back(std::move(text)); }
    void clear() { kept.clear(); }

  private:
    std::deque<std::string> kept;
};

/* The record as the module's writer prints it, including the newline. */
std::string written(const Kind& kind, const Record& record);

/* The text before the first record: the count line of a Devices file, otherwise empty. */
std::string writtenPreamble(const Kind& kind, size_t records);

} // namespace algdata

#endif
