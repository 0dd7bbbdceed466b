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

/*
 * The scripts leave the work to `algdata --complete WORD...`, which prints a line per
 * candidate: a word, a tab and a description. Where it prints nothing they complete the
 * names of files, as the shell does it, so that blanks in names are quoted as usual.
 */

namespace
{

constexpr const char* bashCompletion = R"(# Made by algdata --generate-completion bash.
_algdata()
{
    # Bash splits words at = < and >. Join them again.
    local words=() piece i
    for ((i = 1; i <= COMP_CWORD; ++i)); do
        piece=${COMP_WORDS[i]}
        if ((${#words[@]} > 0)) && [[ $piece == [=\<\>]* || ${words[-1]} == *[=\<\>] ]]; then
            words[-1]+=$piece
        else
            words+=("$piece")
        fi
    done
    words[-1]=${words[-1]#[\'\"]}
    mapfile -t COMPREPLY < <("$1" --complete "${words[@]}" 2> /dev/null)
    COMPREPLY=("${COMPREPLY[@]%%$'\t'*}")
    # Bash replaces only what follows the last = < or >.
    [[ $piece == [=\<\>]* ]] && piece=
    piece=${piece#[\'\"]}
    COMPREPLY=("${COMPREPLY[@]#"${words[-1]%"$piece"}"}")
    if [[ ${#COMPREPLY[@]} -eq 1 && ${COMPREPLY[0]} == *= ]]; then
        compopt -o nospace
    fi
}
complete -o default -F _algdata algdata
)";

constexpr const char* zshCompletion = R"(#compdef algdata
# Made by algdata --generate-completion zsh.
_algdata()
{
    local -a lines candidates
    local line
    lines=("${(@f)$("$words[1]" --complete "${(@Q)words[2,CURRENT]}" 2> /dev/null)}")
    if [[ -z $lines[1] ]]; then
        _files
        return
    fi
    for line in "$lines[@]"; do
        candidates+=("${${line%%$'\t'*}//:/\\:}:${line#*$'\t'}")
    done
    _describe algdata candidates
}
_algdata "$@"
)";

constexpr const char* fishCompletion = R"(# Made by algdata --generate-completion fish.
function __algdata_candidates
    set -l words (commandline -opc)
    set -l word (commandline -ct)
    set -l candidates ($words[1] --complete $words[2..-1] "$word" 2> /dev/null)
    if test (count $candidates) -gt 0
        printf '%s\n' $candidates
    else
        __fish_complete_path "$word"
    end
end
complete -c algdata -f -a '(__algdata_candidates)'
)";

} // namespace

std::string completionScript(const std::string& shell)
{
    if (shell == "bash")
        return bashCompletion;
    if (shell == "zsh")
        return zshCompletion;
    if (shell == "fish")
        return fishCompletion;
    throw Failure("there is no completion for " + shell + "; there is one for bash, zsh and fish");
}

} // namespace algdata
