# For scripts that do several things in a row: says what they do and, in the end, how long each took.

steps=()

# step TITLE COMMAND...
step() {
  local title=$1 began=$SECONDS
  shift
  printf '\n== %s\n' "$title"
  "$@" || { printf '\n== %s: failed after %d s\n' "$title" $((SECONDS - began)) >&2; exit 1; }
  steps+=("$(printf '%5d s  %s' $((SECONDS - began)) "$title")")
}

# The steps' times and their sum.
print_steps() {
  printf '\n'
  printf '%s\n' "${steps[@]}"
  printf '%5d s  in all\n' "$SECONDS"
}
