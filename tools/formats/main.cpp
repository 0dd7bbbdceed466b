/* SPDX-License-Identifier: Apache-2.0 */
/*
 * Prints the description in formats/ for people and for scripts.
 *
 *     format_tables update DOCUMENT EXAMPLES   updates the tables in the document
 *     format_tables check DOCUMENT EXAMPLES    fails if a table is not current
 *     format_tables list                       lists formats, members and functions, one per line
 *
 * A table is between "<!-- begin: NAME -->" and "<!-- end: NAME -->", where NAME is
 * "overview" or a kind. EXAMPLES is a directory with one file of each kind.
 */
#include <cstdio>
#include <fstream>
#include <iostream>
#include <map>
#include <sstream>
#include <stdexcept>
#include <string>

#include "formats/formatStrings.h"
#include "formats/meaning.h"

namespace
{

using namespace formats;

std::string fileText(const std::string& path)
{
    std::ifstream file(path);
    std::ostringstream text;
    text << file.rdbuf();
    if (!file)
        throw std::runtime_error("cannot read " + path);
    return text.str();
}

std::string code(const std::string& text)
{
    return "`" + text + "`";
}

/* ---- The fields of a line ------------------------------------------------ */

std::string nameCell(const Field& field)
{
    const bool array = field.count > 1 && !field.interleaved;
    return code(field.name + (array ? "[0.." + std::to_string(field.count - 1) + "]" : ""));
}

std::string typeCell(const Field& field)
{
    const bool array = field.count > 1 && !field.interleaved;
    return (array ? std::to_string(field.count) + " x " : "") + typeName(field.type);
}

std::string widthOutCell(const Field& field)
{
    if (field.type == Type::F32)
        return "2 decimals";
    if (field.printsSigned)
        return "signed";
    return field.widthOut == 0 ? "-" : std::to_string(field.widthOut);
}

std::string widthInCell(const Field& field)
{
    return field.widthIn == 0 ? "-" : std::to_string(field.widthIn);
}

std::string textOr(const std::string& text, const char* other)
{
    return text.empty() ? other : text;
}

std::string meaningCell(const Field& field)
{
    std::string text = meaningOf(field);
    if (field.limit != 0 && field.values.size() == 0)
        text += ", at most " + std::to_string(field.limit);
    return text + (field.key ? "; key" : "");
}

std::string fieldRow(const Field& field)
{
    return "| " + nameCell(field) + " | " + typeCell(field) + " | " + widthOutCell(field) + " | " +
           widthInCell(field) + " | " + textOr(field.unit, "-") + " | " +
           textOr(loadText(field.load), "as stored") + " | " + meaningCell(field) + " |\n";
}

std::string fieldTable(const Layout& layout)
{
    std::string text = "| Field | Type | Width out | Width in | Unit | Loaded as | Meaning |\n"
                       "|---|---|---|---|---|---|---|\n";
    bool inBands = false;
    for (const Field& field : layout.fields) {
        if (field.interleaved && !inBands)
            text += "| then for each band 0 to " + std::to_string(ALG_BANDS - 1) + ": | | | | | | |\n";
        inBands = field.interleaved;
        text += fieldRow(field);
    }
    return text;
}

/* ---- A kind --------------------------------------------------------------- */

const char* roleText(Role role)
{
    static const char* const texts[] = {
        "Read by",    "Written by", "Updated by", "Records appended by", "Records deleted by",
        "Emptied by", "Created by", "Tested by"};
    return texts[static_cast<size_t>(role)];
}

/* "- Read by `f` and `g`", one line per role. */
std::string functionsText(const Kind& kind)
{
    std::string text =
        "- Record " + code(kind.type.name) + "; " + code("algdata") + " kind " + code(kind.name);
    const Function* before = nullptr;
    for (const Function& function : kind.functions) {
        const bool sameRole = before != nullptr && before->role == function.role;
        text += sameRole ? " and " : std::string("\n- ") + roleText(function.role) + " ";
        text += code(function.name);
        before = &function;
    }
    return text + "\n";
}

std::string countText(const Layout& layout)
{
    const size_t count = fieldCount(layout);
    return std::to_string(count) + (count == 1 ? " field" : " fields");
}

std::string lineText(const Kind& kind)
{
    const std::string how = kind.readByLine ? "- Read by line. " : "- Read by field. ";
    const std::string blanks = kind.trailingBlank ? "; a blank follows each field, also the last one.\n"
                                                  : "; one blank between fields.\n";
    switch (kind.shape) {
    case Shape::Lines:
        return how + "One line of " + countText(kind.record) + " per record" + blanks;
    case Shape::Stream:
        return how + countText(kind.record) + " per record; line breaks mean nothing.\n";
    case Shape::Devices:
        return how + "A count line, then per record a line of " + countText(kind.record) +
               " and entry lines of " + countText(kind.entries.layout) + blanks;
    case Shape::Index:
        return how + "One record: a line of " + countText(kind.record) + ", then entry lines of " +
               countText(kind.entries.layout) + blanks;
    }
    return "";
}

std::string tablesText(const Kind& kind)
{
    if (!kind.hasEntries())
        return fieldTable(kind.record);
    std::string text;
    if (kind.preamble.fields.size() != 0)
        text += "The first line:\n\n" + fieldTable(kind.preamble) + "\n";
    text += "The line of a record:\n\n" + fieldTable(kind.record) + "\n";
    return text + "The line of an entry, " + code(kind.entries.record) + ":\n\n" +
           fieldTable(kind.entries.layout);
}

/* The file name of a kind: "ap-all-detail" becomes "apAllDetail.txt". */
std::string fileName(const std::string& kind)
{
    std::string name;
    for (size_t i = 0; i < kind.size(); ++i) {
        if (kind[i] == '-')
            name += static_cast<char>(kind[++i] & ~0x20);
        else
            name += kind[i];
    }
    return name + ".txt";
}

/* Shortens a line: of a long array, keeps the first two elements and the last one. */
std::string shortened(const Kind& kind, const std::string& line)
{
    std::istringstream fields(line);
    std::string text;
    eachField(kind.record, [&](const Field& field, int element) {
        std::string value;
        fields >> value;
        if (element < 2 || element == field.count - 1)
            text += (text.empty() ? "" : " ") + value;
        else if (element == 2)
            text += " ...";
    });
    return text;
}

/* The first line of the example file or, for a kind with entries, the first four lines. */
std::string exampleText(const Kind& kind, const std::string& directory)
{
    std::istringstream file(fileText(directory + "/" + fileName(kind.name)));
    std::string text;
    std::string line;
    for (int left = kind.hasEntries() ? 4 : 1; left > 0 && std::getline(file, line); --left)
        text += (kind.shape == Shape::Stream ? shortened(kind, line) : line) + "\n";
    return "```\n" + text + "```\n";
}

std::string kindText(const Kind& kind, const std::string& directory)
{
    return functionsText(kind) + lineText(kind) + "\n" + tablesText(kind) + "\n" +
           exampleText(kind, directory);
}

std::string overviewText()
{
    std::string text =
        "| # | Kind | Contains | Read | Records from | Update key | Cap |\n|--:|---|---|---|---|---|---|\n";
    int number = 0;
    for (const Kind* kind : kinds)
        text += "| " + std::to_string(++number) + " | " + code(kind->name) + " | " + kind->title + " | " +
                (kind->readByLine ? "by line" : "by field") + " | " + kind->recordsFrom + " | " +
                kind->updateKey + " | " + kind->capText + " |\n";
    return text;
}

/* ---- The document --------------------------------------------------------- */

std::map<std::string, std::string> allBlocks(const std::string& directory)
{
    std::map<std::string, std::string> blocks = {{"overview", overviewText()}};
    for (const Kind* kind : kinds)
        blocks[kind->name] = kindText(*kind, directory);
    return blocks;
}

/* The document with the text between each pair of markers replaced. */
std::string updated(std::string document, const std::map<std::string, std::string>& blocks)
{
    for (const auto& [name, text] : blocks) {
        const std::string begin = "<!-- begin: " + name + " -->\n";
        const size_t from = document.find(begin);
        const size_t to = document.find("<!-- end: " + name + " -->");
        if (from == std::string::npos || to == std::string::npos || to < from)
            throw std::runtime_error("the document has no markers for " + name);
        document.replace(from + begin.size(), to - from - begin.size(), text);
    }
    return document;
}

int update(const std::string& path, const std::string& directory)
{
    const std::string text = updated(fileText(path), allBlocks(directory));
    std::ofstream file(path);
    file << text;
    file.close();
    if (!file)
        throw std::runtime_error("cannot write " + path);
    return 0;
}

/* Prints the first line that differs. */
int check(const std::string& path, const std::string& directory)
{
    const std::string document = fileText(path);
    std::istringstream now(document);
    std::istringstream current(updated(document, allBlocks(directory)));
    std::string line;
    std::string wanted;
    for (int number = 1; std::getline(current, wanted); ++number) {
        if (std::getline(now, line) && line == wanted)
            continue;
        std::cout << path << ":" << number << ": is not current, expected\n"
                  << wanted << "\n"
                  << "To update it: cmake --build --preset debug --target update_file_formats\n";
        return 1;
    }
    return 0;
}

/* ---- The list -------------------------------------------------------------- */

void listFormats(const char* what, const FormatStrings& strings)
{
    for (const FormatString& format : strings) {
        std::cout << what << " ";
        for (const char c : std::string(format.text))
            std::cout << (c == '\n' ? "\\n" : std::string(1, c));
        std::cout << "\n";
    }
}

void listMembers(const char* record, const Layout& layout)
{
    for (const Field& field : layout.fields)
        std::cout << "member " << record << " " << field.name << "\n";
}

int list()
{
    listFormats("in", inFormats);
    listFormats("out", outFormats);
    for (const Kind* kind : kinds) {
        listMembers(kind->type.name, kind->record);
        listMembers(kind->entries.record, kind->entries.layout);
        for (const Function& function : kind->functions)
            std::cout << "function " << function.name << "\n";
    }
    return 0;
}

} // namespace

int main(int argc, char** argv)
try {
    const std::string command = argc > 1 ? argv[1] : "";
    if (command == "list" && argc == 2)
        return list();
    if (command == "update" && argc == 4)
        return update(argv[2], argv[3]);
    if (command == "check" && argc == 4)
        return check(argv[2], argv[3]);
    std::cerr << "usage: format_tables update|check DOCUMENT EXAMPLES\n       format_tables list\n";
    return 2;
} catch (const std::exception& error) {
    std::cerr << "format_tables: " << error.what() << "\n";
    return 1;
}
