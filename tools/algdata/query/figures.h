/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Statistics of the values of a field. The memory is bounded whatever the number of
 * values, so that thousands of files need no more memory than a few.
 */
#ifndef ALGDATA_FIGURES_H
#define ALGDATA_FIGURES_H

#include <map>
#include <memory>
#include <optional>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "query/fields.h"
#include "records/records.h"

namespace algdata
{

/* Counts distinct texts: exactly up to a few thousand, beyond that with an error of about 1 %. */
class Distinct
{
  public:
    void add(std::string_view text);
    size_t count() const;
    bool isExact() const { return registers.empty(); }

  private:
    void estimate(uint64_t hash);

    std::unordered_set<uint64_t> hashes; /* while exact */
    std::vector<uint8_t> registers;      /* of HyperLogLog; empty while the count is exact */
};

/* The frequencies of numbers of 8 and 16 bits. */
class SmallNumbers
{
  public:
    void add(uint16_t number);
    size_t distinct() const;
    double at(size_t place) const; /* the number at this place of the sorted numbers */

  private:
    using Page = std::vector<size_t>;
    Page pages[256]; /* by the high byte; empty without numbers */
};

/* The frequencies of other numbers; beyond a few thousand distinct ones, a random sample. */
class OtherNumbers
{
  public:
    void add(double number);
    bool isExact() const { return sample.empty(); }
    size_t distinct() const { return isExact() ? counts.size() : different.count(); }
    double at(size_t place) const;

  private:
    void addToSample(double number);

    std::map<double, size_t> counts;
    Distinct different;
    std::vector<double> sample; /* each number was kept with the same probability */
    size_t seen = 0;            /* how many numbers the sample was taken from */
};

class FieldFigures
{
  public:
    explicit FieldFigures(const Pick& pick);

    void add(Token value);

    const std::string& name() const { return fieldName; }
    bool isMac() const { return field.type == Type::Mac; }
    size_t values() const { return count; }
    size_t bad() const { return damaged; } /* damaged or missing values */
    size_t zeros() const { return zeroCount; }
    size_t distinct() const;
    bool distinctIsExact() const;

    /* Null if there are no numbers. */
    std::optional<double> smallest() const { return least; }
    std::optional<double> median() const;
    std::optional<double> largest() const { return greatest; }
    bool medianIsExact() const { return others.isExact(); }

  private:
    void addNumber(double number);
    double at(size_t place) const;

    std::string fieldName;
    const Field& field;
    size_t count = 0;
    size_t damaged = 0;
    size_t zeroCount = 0;
    std::optional<double> least;
    std::optional<double> greatest;
    std::unique_ptr<SmallNumbers> small;
    OtherNumbers others;
    Distinct macs;
};

/* For an even number of values, the mean of the two in the middle; null if there are none. Sorts the values.
 */
std::optional<double> medianOf(std::vector<double>& values);

/* "27.5"; empty if there is no number. */
std::string figureText(const std::optional<double>& number);

} // namespace algdata

#endif
