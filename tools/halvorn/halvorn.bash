# Completion of halvorn(1) for bash.
_halvorn() {
  local word=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD-1]} verb='' each
  local arguments='-sourcePath -destinationPath -productName -version -minSystemVersion -readMePath -documentationPath
    -iconPath -wrapperPath -productCode -quitCode -completionSound -completionQuit'
  for each in "${COMP_WORDS[@]:1:COMP_CWORD-1}"; do
    case $each in -*) ;; *) verb=$each; break ;; esac
  done
  COMPREPLY=()
  case $previous in
    --installer | --read-me | --documentation | --output | -o | -*Path)
      compopt -o filenames 2>/dev/null
      mapfile -t COMPREPLY < <(compgen -f -- "$word")
      return ;;
  esac
  local words=''
  case $verb in
    '') words='audit check image install plan remove report --json --help' ;;
    audit) words='--json' ;;
    check) words='--json --installer' ;;
    image) words='--json --installer --output --read-me --documentation --inside --beside --sign' ;;
    install) words="--json --installer --yes --no-launch --administrator $arguments" ;;
    plan) words="--json --installer $arguments" ;;
    remove) words='--json --yes' ;;
    report) words='--json --installer --output --yes' ;;
  esac
  mapfile -t COMPREPLY < <(compgen -W "$words" -- "$word")
  case $verb in
    audit | check | image | remove)
      if [[ $word != -* ]]; then
        compopt -o filenames 2>/dev/null
        mapfile -t -O "${#COMPREPLY[@]}" COMPREPLY < <(compgen -d -- "$word")
      fi ;;
  esac
}
complete -F _halvorn halvorn
