# Shared by the tests of the file's sections: which sections there are and which bytes they hold,
# as the emitter wrote them. Sourced; wants objcopy and emitted to be set.

# Lines of: section name, file of its bytes.
section_list() {
  awk '/^\.section/ { split($2, part, ","); name = part[1] }
       /^\.incbin/ { gsub(/"/, "", $2); print name, $2 }' "$emitted/sections.s"
}

# Fails unless every section of the file holds the emitted bytes.
expect_all_bytes() { # file, what was done to it
  dumps=
  for name in $(section_list | cut -d' ' -f1); do dumps="$dumps --dump-section $name=$work/$name"; done
  rm -f "$work"/.xlog_* "$work"/.halyard
  # shellcheck disable=SC2086
  $objcopy $dumps "$1" "$work/copy"
  compared=0
  section_list >"$work/list"
  while read -r name bytes; do
    [ -e "$work/$name" ] || { echo "$2: $name is missing"; exit 1; }
    cmp "$emitted/$bytes" "$work/$name" || { echo "$2: $name differs from what was emitted"; exit 1; }
    compared=$((compared + 1))
  done <"$work/list"
  [ $compared -eq 5 ] || { echo "$2: compared $compared sections, expected 5"; exit 1; }
  echo "$2: all 5 sections hold what was emitted"
}
