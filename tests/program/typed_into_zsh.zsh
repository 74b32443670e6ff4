#!/usr/bin/env zsh
# SPDX-FileCopyrightText: The Lapsa authors
# SPDX-License-Identifier: MIT
#
# typed_into_zsh.zsh COMPLETIONS FOLDER LINE: an interactive zsh inside this one. Loads the completions, puts FOLDER in
# front of PATH, types the line and Tab, and prints what stands there then.
zmodload zsh/zpty
zpty inner env TERM=dumb zsh -f -i
say() { zpty -w inner "$1" }
say "PS1= PS2= PROMPT_EOL_MARK=; unsetopt zle_bracketed_paste 2>/dev/null; fpath=($1 \$fpath); PATH=$2:\$PATH"
say "autoload -Uz compinit && compinit -u -D; stty columns 500; zstyle ':completion:*' list-prompt ''"
say "report() { print -r -- \"line<\$BUFFER>line\"; exit }; zle -N report; bindkey '^X' report; zstyle ':completion:*' menu no"
say "print re''ady"
zpty -r -m inner seen '*ready*' || exit 1
zpty -w -n inner "$3"$'\t'
zpty -w -n inner $'\x18'
zpty -r -m inner seen '*line<*>line*' || exit 1
print -r -- ${${seen##*line<}%%>line*}
