/* SPDX-License-Identifier: Apache-2.0 */
#include "commandline/generate.h"

#include <fmt/format.h>

#include "commandline/options.h"
#include "commandline/usage.h"

namespace algdata
{

namespace
{

std::vector<const CLI::App*> commandsOf(const CLI::App& app)
{
    return app.get_subcommands([](const CLI::App*) { return true; });
}

std::vector<const CLI::Option*> optionsOf(const CLI::App& app)
{
    return app.get_options(
        [](const CLI::Option* option) { return option->nonpositional() && !option->get_group().empty(); });
}

std::vector<const CLI::Option*> positionalsOf(const CLI::App& app)
{
    return app.get_options([](const CLI::Option* option) { return option->get_positional(); });
}

std::string longName(const CLI::Option& option)
{
    return "--" + option.get_lnames()[0];
}

/* Whether a value has to follow, may follow, or none does. */
bool takesValue(const CLI::Option& option)
{
    return option.get_items_expected_max() != 0 && !option.get_type_name().empty();
}

std::string joined(const std::vector<std::string>& words, const char* between)
{
    std::string text;
    for (const std::string& word : words)
        text += (text.empty() ? "" : between) + word;
    return text;
}

/* ---- Manual page -------------------------------------------------------- */

std::string roff(const std::string& text)
{
    std::string escaped;
    for (const char c : text) {
        const bool lineStart = escaped.empty() || escaped.back() == '\n';
        if (c == '\\')
            escaped += "\\e";
        else if (c == '-')
            escaped += "\\-";
        else
            (escaped += lineStart && (c == '.' || c == '\'') ? "\\&" : "") += c;
    }
    return escaped;
}

std::string roffOption(const CLI::Option& option)
{
    std::string names;
    for (const std::string& name : option.get_snames())
        names += "\\fB\\-" + roff(name) + "\\fR, ";
    names += "\\fB" + roff(longName(option)) + "\\fR";
    if (takesValue(option))
        names += " \\fI" + roff(option.get_type_name()) + "\\fR";
    return ".TP\n" + names + "\n" + roff(option.get_description()) + "\n";
}

std::string roffCommand(const CLI::App& command)
{
    std::string synopsis = "\\fBalgdata " + command.get_name() + "\\fR [\\fIoptions\\fR]";
    for (const CLI::Option* option : positionalsOf(command))
        synopsis +=
            " \\fI" + option->get_name(true) + (option->get_items_expected_max() > 2 ? "...\\fR" : "\\fR");
    std::string text = ".SS " + synopsis + "\n" + roff(command.get_description()) + ".\n";
    for (const CLI::Option* option : optionsOf(command))
        text += roffOption(*option);
    return text + ".PP\n.nf\n" + roff(command.get_footer()) + ".fi\n";
}

} // namespace

std::string manualPage(const CLI::App& app)
{
    std::string text =
        ".\\\" Made by algdata --generate-man.\n.TH ALGDATA 1 \"\" \"algdata " ALGDATA_VERSION
        "\" \"User Commands\"\n.SH NAME\nalgdata \\- look into record files, check them, convert them\n"
        ".SH SYNOPSIS\n.B algdata\n\\fIcommand\\fR [\\fIoptions\\fR] [\\fIarguments\\fR]\n.SH DESCRIPTION\n";
    text += roff(app.get_description()) + "\n.SH OPTIONS\n";
    for (const CLI::Option* option : optionsOf(app))
        text += roffOption(*option);
    text += ".SH COMMANDS\n";
    for (const CLI::App* command : commandsOf(app))
        text += roffCommand(*command);
    text += ".SH RULES\nWhat \\fBalgdata check\\fR finds; \\fBalgdata check \\-\\-explain\\fR \\fIRULE\\fR "
            "tells more.\n.PP\n";
    text += roff(joined(choicesFor("--explain"), ", ")) + "\n";
    text += ".SH ENVIRONMENT\n.TP\n\\fBNO_COLOR\\fR\nNo colours unless \\-\\-color asks for them.\n"
            ".TP\n\\fBPAGER\\fR\nThe pager for tables on a terminal; empty or \\fBcat\\fR for none.\n.SH "
            "NOTES\n.nf\n";
    return text + roff(app.get_footer()) + ".fi\n";
}

/* ---- Completions -------------------------------------------------------- */

namespace
{

std::string optionWords(const CLI::App& app)
{
    std::vector<std::string> words;
    for (const CLI::Option* option : optionsOf(app))
        words.push_back(longName(*option));
    return joined(words, " ");
}

std::string bashCompletion(const CLI::App& app)
{
    std::string commands;
    std::string cases;
    for (const CLI::App* command : commandsOf(app)) {
        commands += (commands.empty() ? "" : " ") + command->get_name();
        cases += fmt::format("        {}) words=\"{}\" ;;\n", command->get_name(), optionWords(*command));
    }
    std::string values;
    for (const char* option : {"--kind", "--view", "--format", "--color", "--explain"})
        values += fmt::format("        {}) COMPREPLY=($(compgen -W \"{}\" -- \"$word\")); return ;;\n",
                              option, joined(choicesFor(option), " "));
    return fmt::format(
        "# Made by algdata --generate-completion bash.\n"
        "_algdata()\n{{\n"
        "    local word=\"${{COMP_WORDS[COMP_CWORD]}}\" before=\"${{COMP_WORDS[COMP_CWORD-1]}}\" words=\"\"\n"
        "    if [ \"$COMP_CWORD\" -eq 1 ]; then\n"
        "        COMPREPLY=($(compgen -W \"{} {}\" -- \"$word\"))\n        return\n    fi\n"
        "    case \"$before\" in\n"
        "        -k) before=--kind ;;\n        -f) before=--format ;;\n    esac\n"
        "    case \"$before\" in\n{}    esac\n"
        "    case \"${{COMP_WORDS[1]}}\" in\n{}    esac\n"
        "    case \"$word\" in\n"
        "        -*) COMPREPLY=($(compgen -W \"$words\" -- \"$word\")) ;;\n"
        "        *) COMPREPLY=($(compgen -f -- \"$word\")) ;;\n"
        "    esac\n}}\ncomplete -o filenames -F _algdata algdata\n",
        commands, optionWords(app), values, cases);
}

/* Inside single quotes, and inside the brackets of an option's description. */
std::string zshText(const std::string& text)
{
    std::string escaped;
    for (const char c : text) {
        if (c == '\'')
            escaped += "'\\''";
        else
            (escaped += c == '[' || c == ']' || c == ':' ? "\\" : "") += c;
    }
    return escaped;
}

std::string zshOption(const CLI::Option& option)
{
    const std::vector<std::string> choices = choicesFor(longName(option));
    std::string text =
        fmt::format("            '*{}[{}]", longName(option), zshText(option.get_description()));
    if (takesValue(option)) {
        const std::string action = !choices.empty()                 ? "(" + joined(choices, " ") + ")"
                                   : longName(option) == "--output" ? "_files"
                                                                    : " ";
        text += fmt::format("{}{}:{}", option.get_expected_min() == 0 ? "::" : ":",
                            zshText(longName(option).substr(2)), action);
    }
    return text + "' \\\n";
}

std::string zshCompletion(const CLI::App& app)
{
    std::string commands;
    std::string cases;
    for (const CLI::App* command : commandsOf(app)) {
        commands +=
            fmt::format("        '{}:{}'\n", command->get_name(), zshText(command->get_description()));
        cases += fmt::format("    {})\n        _arguments \\\n", command->get_name());
        for (const CLI::Option* option : optionsOf(*command))
            cases += zshOption(*option);
        cases += "            '*:file:_files'\n        ;;\n";
    }
    return fmt::format(
        "#compdef algdata\n# Made by algdata --generate-completion zsh.\n"
        "local -a commands\ncommands=(\n{})\n"
        "if (( CURRENT == 2 )); then\n"
        "    _describe command commands\n    _arguments '--help[Print help]' '--version[Print the version]'\n"
        "    return\nfi\n"
        "local command=$words[2]\nshift words\n(( CURRENT-- ))\n"
        "case $command in\n{}esac\n",
        commands, cases);
}

std::string fishText(const std::string& text)
{
    std::string escaped;
    for (const char c : text)
        (escaped += c == '\'' || c == '\\' ? "\\" : "") += c;
    return escaped;
}

std::string fishCompletion(const CLI::App& app)
{
    std::string text = "# Made by algdata --generate-completion fish.\n";
    for (const CLI::App* command : commandsOf(app)) {
        text += fmt::format("complete -c algdata -n __fish_use_subcommand -f -a {} -d '{}'\n",
                            command->get_name(), fishText(command->get_description()));
        for (const CLI::Option* option : optionsOf(*command)) {
            const std::string choices = joined(choicesFor(longName(*option)), " ");
            text += fmt::format(
                "complete -c algdata -n '__fish_seen_subcommand_from {}' -l {}{}{} -d '{}'\n",
                command->get_name(), longName(*option).substr(2), takesValue(*option) ? " -r" : "",
                choices.empty() ? "" : " -f -a '" + choices + "'", fishText(option->get_description()));
        }
    }
    for (const CLI::Option* option : optionsOf(app))
        text += fmt::format("complete -c algdata -n __fish_use_subcommand -l {} -d '{}'\n",
                            longName(*option).substr(2), fishText(option->get_description()));
    return text;
}

} // namespace

std::string completion(const CLI::App& app, const std::string& shell)
{
    if (shell == "bash")
        return bashCompletion(app);
    if (shell == "zsh")
        return zshCompletion(app);
    if (shell == "fish")
        return fishCompletion(app);
    throw Failure("there is no completion for " + shell + "; there is one for bash, zsh and fish");
}

} // namespace algdata
