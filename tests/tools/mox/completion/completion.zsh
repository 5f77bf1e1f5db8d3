#!/usr/bin/zsh -f
# Completes some command lines, typed into an inner shell, with the script of the program given as the only argument.
setopt err_exit
program=${1:A}
folder=$(mktemp -d)
trap 'rm -rf $folder' EXIT
cd $folder
touch "two words.mox"
mkdir inner
$program completion zsh > _mox

zmodload zsh/zpty
zpty shell env HOME=$folder ZDOTDIR=$folder TERM=dumb zsh -f -i
# A completed line runs this function, which keeps its words.
zpty -w shell "cd $folder; PS1=; unsetopt beep; fpath=($folder \$fpath); autoload -Uz compinit; compinit -u -D
    mox() { printf '<%s>' \"\$@\" > words.new; mv words.new words; }; touch ready"

waitFor() {
    local i
    for i in {1..300}; do
        [[ -e $1 ]] && return
        sleep 0.1
    done
    echo "the inner shell does not answer" >&2
    exit 1
}

# expect LINE WANTED: the words of the line after the tabulator key, each in angle brackets.
expect() {
    rm -f words
    zpty -w shell "$1"$'\t'
    waitFor words
    if [[ "$(<words)" != "$2" ]]; then
        echo "completing '$1': expected $2, got $(<words)" >&2
        exit 1
    fi
}

waitFor ready
expect 'mox sta' '<stat>'
expect 'mox --vers' '<--version>'
expect 'mox tree --attr' '<tree><--attributes>'
expect 'mox --no-color dump --no-d' '<--no-color><dump><--no-date>'
expect 'mox extract --format c' '<extract><--format><csv>'
expect 'mox extract --all i' '<extract><--all><inner>'
expect 'mox info tw' '<info><two words.mox>'
expect 'mox completion f' '<completion><fish>'
expect 'mox help im' '<help><import>'
zpty -d shell
echo "all completions are as expected"
