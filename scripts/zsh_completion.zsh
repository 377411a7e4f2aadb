# Prints the line that zsh makes of one when Tab is pressed at its end.
#   zsh -f scripts/zsh_completion.zsh FOLDER_OF_COMPLETIONS 'LINE'
zmodload zsh/zpty
TERM=dumb zpty shell zsh -f
zpty -w shell "fpath=(${(q)1} \$fpath); autoload -Uz compinit; compinit -D -u; PROMPT=ready; print re''ady"
said=
until [[ $said == *ready*ready* ]]; do zpty -r shell piece || exit 1; said+=$piece; done
zpty -w -n shell "$2"$'\t'
said=
for ((i = 0; i < 100; ++i)); do
  sleep 0.1
  while zpty -r -t shell piece; do said+=$piece; done
  [[ $said == *$2?* ]] && break
done
print -r -- $said
zpty -d shell
