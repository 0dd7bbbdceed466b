/* SPDX-License-Identifier: Apache-2.0 */
#include "commandline/complete.h"

#include <algorithm>

#include "checking/rules.h"
#include "commandline/usage.h"
#include "commands/commands.h"
#include "query/fields.h"

namespace algdata
{

namespace
{

struct Candidate {
    std::string word;
    std::string description;
};

using Candidates = std::vector<Candidate>;

Candidates withoutDescriptions(const std::vector<std::string>& words)
{
    Candidates candidates;
    for (const std::string& word : words)
        candidates.push_back({word, ""});
    return candidates;
}

/* ---- Commands and options ----------------------------------------------- */

Candidates optionsOf(const CLI::App& command)
{
    Candidates candidates;
    for (const CLI::Option* option : command.get_options())
        if (option->nonpositional() && !option->get_group().empty())
            candidates.push_back({"--" + option->get_lnames()[0], option->get_description()});
    return candidates;
}

Candidates commandsOf(const CLI::App& app)
{
    Candidates candidates;
    for (const CLI::App* command : app.get_subcommands([](const CLI::App*) { return true; }))
        candidates.push_back({command->get_name(), command->get_description()});
    const Candidates options = optionsOf(app);
    candidates.insert(candidates.end(), options.begin(), options.end());
    return candidates;
}

/* The long name of an option that expects a value; empty for every other word. */
std::string optionWithValue(const CLI::App& command, const std::string& word)
{
    if (word.size() < 2 || word[0] != '-')
        return "";
    const CLI::Option* option = command.get_option_no_throw(word);
    if (option == nullptr || option->get_items_expected_max() == 0)
        return "";
    return "--" + option->get_lnames()[0];
}

/* ---- Fields and their values -------------------------------------------- */

bool beginsWith(const std::string& word, const std::string& start)
{
    return word.compare(0, start.size(), start) == 0;
}

/* The kind that the words before the last one ask for; null if they ask for none. */
const Kind* kindIn(const std::vector<std::string>& words)
{
    const Kind* kind = nullptr;
    for (size_t i = 0; i + 1 < words.size(); ++i)
        if (words[i] == "-k" || words[i] == "--kind")
            kind = findKind(words[i + 1]);
        else if (beginsWith(words[i], "--kind="))
            kind = findKind(words[i].substr(7));
        else if (beginsWith(words[i], "-k"))
            kind = findKind(words[i].substr(2));
    return kind;
}

/* The fields of this name, of the kind or of all kinds for null. */
std::vector<const Field*> fieldsNamed(const Kind* wanted, const std::string& name)
{
    std::vector<const Field*> found;
    for (const Kind& kind : kinds())
        if (wanted == nullptr || wanted == &kind)
            for (const Layout* layout : {&kind.head, &kind.entry})
                for (const Field& field : layout->fields)
                    if (name == field.name)
                        found.push_back(&field);
    return found;
}

Candidates fieldsFor(const std::string& command, const Kind* kind)
{
    if (command == "check" || command == "audit")
        return withoutDescriptions(findingColumns());
    if (command == "tree")
        return withoutDescriptions(treeColumns());
    if (command == "kinds")
        return withoutDescriptions(kindColumns());
    Candidates candidates = {{"kind", "the kind of the file"}, {"source", "the name of the file"}};
    for (const std::string& name : fieldNames(kind))
        candidates.push_back({name, fieldsNamed(kind, name)[0]->meaning});
    return candidates;
}

/* The values of a field that has a few known ones. */
Candidates valuesOf(const std::string& command, const Kind* kind, const std::string& field)
{
    const bool finds = command == "check" || command == "audit";
    if (finds && field == "severity")
        return withoutDescriptions(severityNames());
    if (finds && field == "rule")
        return withoutDescriptions(choicesFor("--explain", command));
    if (finds || command == "tree")
        return {};
    Candidates candidates;
    if (field == "kind") {
        for (const Kind& known : kinds())
            candidates.push_back({known.name, known.title});
        return candidates;
    }
    for (const Field* found : fieldsNamed(kind, field))
        for (const formats::NamedValue& value : found->values)
            candidates.push_back({std::to_string(value.value), value.text});
    return candidates;
}

/* ---- Values of options -------------------------------------------------- */

Candidates after(const std::string& prefix, Candidates candidates, const std::string& suffix = "")
{
    for (Candidate& candidate : candidates)
        candidate.word.insert(0, prefix).append(suffix);
    return candidates;
}

/* "rssi=" for "rs", "kind=scanning" for "kind=s". */
Candidates conditions(const std::string& command, const Kind* kind, const std::string& word)
{
    const size_t sign = word.find_first_of("=!<>");
    if (sign == std::string::npos)
        return after("", fieldsFor(command, kind), "=");
    const size_t value = word.find_first_not_of("=!", sign);
    return after(word.substr(0, value), valuesOf(command, kind, word.substr(0, sign)));
}

/* "band,rssi" for "band,rs". In --sort a field may follow a minus sign. */
Candidates fieldList(Candidates fields, const std::string& word, bool sorting)
{
    size_t begin = word.rfind(',') + 1; /* 0 if there is no comma */
    begin = std::min(word.find_first_not_of(' ', begin), word.size());
    if (sorting && word[begin] == '-')
        ++begin;
    return after(word.substr(0, begin), std::move(fields));
}

/* "bridging.bridgingRssi" */
Candidates fieldsWithKinds()
{
    Candidates candidates;
    for (const Kind& kind : kinds())
        for (const Layout* layout : {&kind.head, &kind.entry})
            for (const Field& field : layout->fields)
                candidates.push_back({std::string(kind.name) + "." + field.name, field.meaning});
    return candidates;
}

Candidates valuesFor(const std::string& option, const std::string& command,
                     const std::vector<std::string>& words)
{
    const Kind* kind = kindIn(words);
    if (option == "--where")
        return conditions(command, kind, words.back());
    if (option == "--field")
        return fieldsWithKinds();
    if (option == "--by")
        return fieldList(withoutDescriptions(fieldNames(kind)), words.back(), false);
    if (option == "--columns" || option == "--sort")
        return fieldList(command == "history" ? withoutDescriptions(historyColumns())
                                              : fieldsFor(command, kind),
                         words.back(), option == "--sort");
    return withoutDescriptions(choicesFor(option, command));
}

/* "--kind=scanning" for "--kind=sc". */
Candidates joinedValues(const CLI::App& command, std::vector<std::string> words)
{
    const size_t value = words.back().find('=') + 1;
    const std::string start = words.back().substr(0, value);
    const std::string option = optionWithValue(command, start.substr(0, value - 1));
    words.back().erase(0, value);
    return option.empty() ? Candidates() : after(start, valuesFor(option, words[0], words));
}

Candidates candidatesFor(const CLI::App& app, const std::vector<std::string>& words)
{
    if (words.size() == 1)
        return commandsOf(app);
    const std::vector<std::string> names = commandNames();
    if (std::find(names.begin(), names.end(), words[0]) == names.end())
        return {};
    if (std::find(words.begin(), words.end() - 1, "--") != words.end() - 1)
        return {}; /* only files follow */
    const CLI::App& command = *app.get_subcommand(words[0]);
    const std::string option = words.size() > 2 ? optionWithValue(command, words[words.size() - 2]) : "";
    if (!option.empty())
        return valuesFor(option, words[0], words);
    if (beginsWith(words.back(), "--") && words.back().find('=') != std::string::npos)
        return joinedValues(command, words);
    return words.back()[0] == '-' ? optionsOf(command) : Candidates();
}

} // namespace

std::string completionsOf(const CLI::App& app, const std::vector<std::string>& words)
{
    std::string text;
    if (words.empty())
        return text;
    for (const Candidate& candidate : candidatesFor(app, words))
        if (beginsWith(candidate.word, words.back()))
            text += candidate.word + "\t" + candidate.description + "\n";
    return text;
}

} // namespace algdata
