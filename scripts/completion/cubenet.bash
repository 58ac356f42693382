# bash completion for cubenet.
_cubenet() {
  local cur=${COMP_WORDS[COMP_CWORD]} prev=${COMP_WORDS[COMP_CWORD - 1]} file
  case $prev in
  -i)
    mapfile -t COMPREPLY < <(compgen -f -- "$cur")
    return
    ;;
  -p | -fext | -and | -or | -V) return ;; # free text
  esac
  if [[ $cur == -* ]]; then
    mapfile -t COMPREPLY < <(compgen -W "-b -v -vb -bv -p -i -fext -pla -and -or -V -C" -- "$cur")
    return
  fi
  mapfile -t COMPREPLY < <(compgen -f -X '!*.tt2' -- "$cur" | sed 's/\.tt2$//')
  while read -r file; do COMPREPLY+=("$file/"); done < <(compgen -d -- "$cur")
}
complete -F _cubenet cubenet
