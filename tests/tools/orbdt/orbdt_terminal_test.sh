#!/usr/bin/env bash
# orbdt repl in a real terminal (tmux): Tab completes a property and a value inside quotes, the up
# arrow recalls the last line, Ctrl-C drops a half-typed line, Ctrl-D ends the session; and input
# from a pipe gets no prompts.
#   orbdt_terminal_test.sh ORBDT
set -euo pipefail
orbdt=$1
socket="orbdt-terminal-$$"
history=$(mktemp)
finish() {
  tmux -L "$socket" kill-server 2>/dev/null || true
  rm -f "$history"
}
trap finish EXIT

screen() { tmux -L "$socket" capture-pane -p | sed '/^$/d'; }
# Waits until the screen shows the text (a fixed string), for up to 20 s.
see() {
  for _ in $(seq 200); do
    if screen | grep -qF -- "$1"; then return 0; fi
    sleep 0.1
  done
  echo "FAIL: the screen never showed: $1"
  screen
  exit 1
}
keys() { tmux -L "$socket" send-keys "$@"; }

tmux -L "$socket" new-session -d -x 120 -y 40 \
  "ORBDT_HISTORY=$history $orbdt repl; echo \"exit status \$?\"; sleep 60"
see '>>'
keys 'f = figure' Enter
see 'f = 1'
keys 'l = line(Parent=f)' Enter
see 'l = 0.5'
keys 'l.Co' Tab
see '>> l.Color'
keys " = 'r" Tab
see ">> l.Color = 'red'"
keys Enter 'l.Color' Enter
see 'ans = [1 0 0]'
keys Up
see '>> l.Color'
keys Enter
[[ $(screen | grep -cF 'ans = [1 0 0]') == 2 ]] || { echo "FAIL: the recalled line did not run"; screen; exit 1; }
keys 'disp(' C-c
keys 'disp(42)' Enter
see '42'
keys C-d
see 'exit status 0'
grep -qF 'l.Color' "$history" || { echo "FAIL: the history file holds no line"; exit 1; }

piped=$(printf 'disp(1)\nx = 2\n' | "$orbdt" repl)
[[ $piped == $'1\nx = 2' ]] || { echo "FAIL: piped input printed: $piped"; exit 1; }
echo "terminal session: completion, recall, interrupt and end of input work"
