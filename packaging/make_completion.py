#!/usr/bin/env python3
"""Makes the bash completion of qrv from its live help.

usage: make_completion.py QRV COMPLETION
"""
import sys

import program_help

FRAME = """\
# bash completion of qrv, made from its own help

_qrv_words() {{  # COMMAND: the options of it; without one, the commands and what stands before them
  case $1 in
{words}
  esac
}}

_qrv_values() {{  # OPTION: what can stand behind it, one a line. False: a file, or whatever the user types
  case $1 in
{choices}
    --port | --map | --unmap) "$program" ports 2>/dev/null | cut -f 1 ;;
    *) return 1 ;;
  esac
}}

_qrv() {{
  local program=$1 word=${{COMP_WORDS[COMP_CWORD]}} before=${{COMP_WORDS[COMP_CWORD - 1]}} command="" values
  COMPREPLY=()
  [ "$COMP_CWORD" -gt 1 ] && command=${{COMP_WORDS[1]}}
  if [[ $before == -* ]] && values=$(_qrv_values "$before"); then
    mapfile -t COMPREPLY < <(compgen -W "$values" -- "$word")
  elif [[ -z $command || $word == -* ]]; then
    mapfile -t COMPREPLY < <(compgen -W "$(_qrv_words "$command")" -- "$word")
  elif [ "$command" = function ]; then
    values=$("$program" function 2>/dev/null | cut -d ' ' -f 2)
    # The catalogue's letters, whatever the user's language makes of a small i.
    mapfile -t COMPREPLY < <(LC_ALL=C; compgen -W "$values" -- "${{word^^}}")
  else
    compopt -o filenames 2>/dev/null
    mapfile -t COMPREPLY < <(compgen -f -- "$word")
  fi
}}

complete -F _qrv qrv
"""


def case(pattern, words):
    return f"    {pattern}) echo {chr(39)}{' '.join(words)}{chr(39)} ;;"


def flags(told):
    return [flag for entry in told.entries("Options") for flag in entry.flags() if flag.startswith("--")]


def main():
    program, target = sys.argv[1:]
    own = program_help.of_program(program)
    names = [entry.name for entry in own.entries("Subcommands")]
    commands = {name: program_help.of_program(program, name) for name in names}
    words = [case("''", names + flags(own)), *(case(name, flags(told)) for name, told in commands.items())]
    choices = {}
    for told in commands.values():
        for option in told.entries("Options"):
            if option.choices():
                choices[option.flags()[-1]] = option.choices()
    with open(target, "w", encoding="utf-8") as file:
        file.write(FRAME.format(words="\n".join(words),
                                choices="\n".join(case(flag, values) for flag, values in choices.items())))


main()
