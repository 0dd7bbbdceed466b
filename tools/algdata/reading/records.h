/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Record files as text: lines, fields, numbers, and the records that they
 * make. Nothing here refuses anything: a file is taken apart as far as it goes.
 */
#ifndef ALGDATA_RECORDS_H
#define ALGDATA_RECORDS_H

#include <deque>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "reading/kinds.h"

namespace algdata
{

/* A piece of the file's bytes, so its place in the file is known. Null data: it is not there. */
using Token = std::string_view;

inline bool present(Token token)
{
    return token.data() != nullptr;
}

/* White space as the C library's formatted reads see it. */
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
    bool ended = false;    /* by a newline */
};

/* Hands out the lines of a file one after the other. */
class Lines
{
  public:
    explicit Lines(std::string_view bytes) : rest(bytes) {}
    bool next(Line& line);

  private:
    std::string_view rest;
    size_t number = 0;
};

/* Splits a line at white space, keeps at most `most` fields and gives the number of all. */
size_t split(std::string_view line, std::vector<Token>& tokens, size_t most);

/* A whole number in decimal. */
struct Number {
    bool negative = false;
    bool huge = false; /* beyond 64 bits */
    uint64_t magnitude = 0;
};

/* The number that the whole text is, with an optional sign. */
std::optional<Number> wholeNumber(std::string_view text);

/* The value that a formatted read stores in the field. */
uint64_t readsAs(const Field& field, const Number& number);

/* Whether it stands in the field's type as it is. */
bool inRange(const Field& field, const Number& number);

/* A float as a formatted read takes it, and nothing behind it. */
std::optional<float> wholeFloat(std::string_view text);

/* A field's value in the text of a MAC: twelve hexadecimal digits. */
bool isMac(std::string_view text);

/* Long enough, or of such characters, that it is meant as a MAC and not as a number. */
bool isMacLike(std::string_view text);

struct Record {
    size_t line = 0;                         /* where it begins */
    size_t place = 0;                        /* what finds it again: its first byte, or its index */
    size_t index = 0;                        /* from 0, within the file */
    std::vector<Token> cells;                /* by column of the head */
    std::vector<std::vector<Token>> entries; /* by column of the entry */
    size_t odd = 0;                          /* lines whose number of fields is wrong */
};

/* Hands out the records of a file one after the other. */
class RecordReader
{
  public:
    RecordReader(const Kind& recordKind, std::string_view bytes);

    /* The record's tokens point into the file's bytes. */
    bool next(Record& record);

    /* Goes to the place of a record, which next() then returns once more. */
    void seek(size_t place);

  private:
    bool nextLine(Record& record);
    bool nextOfStream(Record& record);
    bool nextDevice(Record& record);
    bool nextIndex(Record& record);
    bool advance();
    void startAt(const char* at, Record& record) const;
    void take(std::vector<Token>& cells, const Layout& layout, Record& record);

    const Kind& kind;
    std::string_view all;
    Lines lines;
    Line line;
    std::vector<Token> tokens; /* of the current line */
    size_t found = 0;          /* fields of the current line, counted beyond those kept */
    size_t used = 0;           /* of a stream's current line */
    size_t count = 0;
    bool pending = false; /* the current line has yet to be used */
};

/* Whether a line of a Devices file begins a device, by its fields. */
bool beginsDevice(const std::vector<Token>& tokens, size_t found);

/* Whether a field of a stream can only be the key of the next record. */
bool beginsStreamRecord(std::string_view token);

/* Texts made on the way, where the bytes of a file are not enough. */
class Texts
{
  public:
    Token add(std::string text) { return kept.emplace_back(std::move(text)); }
    void clear() { kept.clear(); }

  private:
    std::deque<std::string> kept;
};

/* The record as the module's writer prints it, ended by a newline. */
std::string written(const Kind& kind, const Record& record);

/* Whatever stands before the first record: a Devices file's count line. */
std::string writtenPreamble(const Kind& kind, size_t records);

} // namespace algdata

#endif
