# bash completion for cubekit; the choices come from cubekit itself.
_cubekit_choices() { # first words of the lines under a heading of a help page
  sed -n "/^$1:/,/^\$/s/^  \([^ ,]*\)\(,\([^ ]*\)\)\?.*/\1 \3/p"
}

_cubekit() {
  local cur prev words cword
  _init_completion 2>/dev/null || {
    cur=${COMP_WORDS[COMP_CWORD]}
    prev=${COMP_WORDS[COMP_CWORD - 1]}
    words=("${COMP_WORDS[@]}")
    cword=$COMP_CWORD
  }
  local program=${words[0]} command=${words[1]}
  if [ "$cword" -eq 1 ]; then
    mapfile -t COMPREPLY < <(compgen -W "$("$program" --help 2>/dev/null | _cubekit_choices Subcommands) --help --version" -- "$cur")
  elif [ "$command" = help ]; then
    mapfile -t COMPREPLY < <(compgen -W "$("$program" --help 2>/dev/null | _cubekit_choices Subcommands)" -- "$cur")
  elif [[ $cur == -* ]]; then
    mapfile -t COMPREPLY < <(compgen -W "$("$program" help "$command" 2>/dev/null | _cubekit_choices Options)" -- "$cur")
  elif [ "$command" = export ] && [ "$cword" -eq 2 ]; then
    mapfile -t COMPREPLY < <(compgen -W "blif verilog json" -- "$cur")
  elif [[ $prev == --from ]]; then
    mapfile -t COMPREPLY < <(compgen -W "pla blif verilog json" -- "$cur")
  elif [ "$command" = import ] || [[ $prev == --source ]]; then
    mapfile -t COMPREPLY < <(compgen -f -- "$cur")
    compopt -o filenames 2>/dev/null
  else # a design, or a file of an option
    local file kind=nxf
    [ "$command" != minimize ] || kind=tt2
    mapfile -t COMPREPLY < <(compgen -f -X "!*.$kind" -- "$cur" | sed "s/\.$kind\$//")
    while read -r file; do COMPREPLY+=("$file/"); done < <(compgen -d -- "$cur")
    [ "${#COMPREPLY[@]}" -gt 0 ] || mapfile -t COMPREPLY < <(compgen -f -- "$cur")
    compopt -o nospace 2>/dev/null
  fi
}
complete -F _cubekit cubekit
