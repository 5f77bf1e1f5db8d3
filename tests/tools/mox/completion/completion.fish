#!/usr/bin/fish
# Completes some command lines with the script of the program given as the only argument.
set program (realpath $argv[1])
set folder (mktemp -d)
set -x HOME $folder
cd $folder
touch "two words.mox"
mkdir inner
$program completion fish | source

# expect LINE WANTED...: the completions of a line.
function expect
    set found (complete -C $argv[1] | string replace -r '\t.*' '')
    if test "$found" != "$argv[2..]"
        echo "completing '$argv[1]': expected '$argv[2..]', got '$found'" >&2
        exit 1
    end
end

expect 'mox st' stat
expect 'mox --v' --version
expect 'mox tree --a' --attributes
expect 'mox --no-color dump --no-d' --no-date
expect 'mox extract --format c' csv
expect 'mox extract --all i' inner/
expect 'mox extract --step t'
expect 'mox info tw' 'two words.mox'
expect 'mox completion f' fish
expect 'mox help im' import
complete -C 'mox st' | string match -q '*'\t'*' || begin
    echo "completions lack their descriptions" >&2
    exit 1
end
rm -r $folder
echo "all completions are as expected"
