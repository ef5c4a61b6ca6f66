# Completion of channelstrip in bash. The program itself knows what may follow: an empty line among
# its answers stands for the names of files.
_channelstrip() {
  local answer name current words=() word
  # bash makes a word of the sign in --option=value.
  for word in "${COMP_WORDS[@]:1:COMP_CWORD}"; do
    [ "$word" = = ] || words+=("$word")
  done
  current=${COMP_WORDS[COMP_CWORD]}
  if [ "$current" = = ]; then
    current=
    words+=("")
  fi
  COMPREPLY=()
  while IFS= read -r answer; do
    name=${answer%%$'\t'*}
    if [ -n "$name" ] && [[ $name == "$current"* ]]; then
      COMPREPLY+=("$name")
    elif [ -z "$name" ] && [ ${#COMPREPLY[@]} -gt 0 ]; then
      mapfile -t -O ${#COMPREPLY[@]} COMPREPLY < <(compgen -f -- "$current")
      compopt -o filenames 2>/dev/null
    elif [ -z "$name" ]; then
      compopt -o default 2>/dev/null # readline knows best how to quote names
    fi
  done < <("${1/#\~\//$HOME/}" complete -- "${words[@]}" 2>/dev/null)
}
complete -F _channelstrip channelstrip
