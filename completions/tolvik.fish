# Completion of tolvik and tolvik-page for fish.

# Prints the symbol files that the words before the cursor name: as sources, as destinations, in
# response files, or as the result of an earlier import of the word.
function __tolvik_stores
    for word in (commandline -op)[2..]
        set word (string replace -r '^~/' "$HOME/" -- $word)
        switch $word
            case '-*'
            case '@*' '&*'
                set word (string match -r '^.([^({[]*)' -- $word)[2]
                test -f "$word"; and head -c 65536 -- $word | grep -ao '[^][ ,=;"]*\.tvk'
            case '*'
                string replace -r '=.*' '' -- $word
                string replace -r '^[^=]*=' '' -- $word
                string replace -r '[.].*' '' -- $word | string replace -r '$' .tvk
        end
    end | while read -l store
        string match -q '*.tvk' -- $store; and test -f "$store"; and echo $store
    end
end

# Prints the symbols or objects in these files. Time and number are limited, because symbol files may be
# large.
function __tolvik_names --argument-names kind prefix
    set -l stores (__tolvik_stores)
    set -q stores[1]; or return
    set prefix (string replace -ra '[][\\\\.*^$]' '\\\\$0' -- $prefix)
    set -l strip 's/^_*//; s/_*$//'
    set -l patterns -e "^define=_*$prefix" -e "^refer=_*$prefix"
    if test $kind = object
        set patterns -e "^\\[$prefix"
        set strip
    else if string match -q -- '-*under' (commandline -op)
        set patterns -e "^define=$prefix" -e "^refer=$prefix"
        set strip
    end
    LC_ALL=C timeout 3 grep -ahm 2000 $patterns -- $stores |
        sed 's/^\[\([^]]*\).*/\1/; s/^define=\([^,]*\).*/\1/; s/^refer=\([^ ]*\).*/\1/;'"$strip" |
        sort -u
end

# __tolvik_files PREFIX EXTENSION...: prints directories, and files with one of the extensions. An empty
# extension stands for any, "/" for none.
function __tolvik_files
    for file in (string replace -r '^~/' "$HOME/" -- "$argv[1]")*
        if test -d $file
            echo $file/
            continue
        end
        for extension in $argv[2..]
            string match -q "*$extension" -- $file; and echo $file
        end
    end
end

function __tolvik_options
    printf '%s\n' '-tpc	COFF objects for Windows' '-txbox	the same' '-tgc	GameCube objects' \
        '-tpsx	PlayStation objects' '-tps2	PlayStation 2 objects' '-tsgi	ELF objects' \
        '-tn64	ELF objects' '-telf	ELF objects' '-s	report on a symbol' \
        '-sall	report on all symbols' '-f	report on an object' '-def	report definitions' \
        '-ref	report references' '-links	report linked objects' '-all	report all three' \
        '-0	links of the object alone' '-1	links one level deep' '-2	links two levels deep' \
        '-3	links three levels deep' '-under	keep underscores' '-html	HTML report' \
        '-l	text before links to sources' '-lib	library name, or take it from the path' \
        '-append	add to the symbol file' '-v0	a line for each symbol' \
        '-v1	a line for each known symbol' '-v2	sections' '-v3	failures of programs' \
        '-v4	commands' '-v5	dates of sources' '-v6	values of options' '-nologo	no banner' \
        '-b0	no banner' '-b1	banner' '-r	search the tree' '-sort1	sort by name' \
        '-sort2	sort by extension' '-sort5	sort by destination' \
        '-sort6	sort by extension of the destination' \
        '-sort7	sort by name without directory' '-=	destination' \
        '-.	extension of destinations' '-w0	no effect' '-w1	no effect' '-time0	no effect' \
        '-time1	no effect' '-?	usage' '-h	usage' '--help	usage' '-help	help page' \
        '-history	history' '--version	banner' '-version	check the version'
end

function __tolvik_candidates
    set -l word (commandline -ct)
    set word (string unescape -- $word; or string trim -lc '"\'' -- $word)
    switch $word
        case '-=*'
            __tolvik_files (string sub -s 3 -- $word) '' | string replace -r '^' -- -=
        case '-r?*'
            set -l kept (string match -r '^(?:.*;|-r)' -- $word)
            __tolvik_files (string replace -- $kept '' $word) / | string replace -r '^' -- $kept
        case '-*'
            __tolvik_options
            switch $word
                case '-s*'
                    __tolvik_names symbol (string sub -s 3 -- $word) | string replace -r '^' -- -s
                case '-f*'
                    __tolvik_names object (string sub -s 3 -- $word) | string replace -r '^' -- -f
            end
        case '@*' '&*'
            __tolvik_files (string sub -s 2 -- $word) '' |
                string replace -r '^' -- (string sub -l 1 -- $word)
        case '*=*'
            __tolvik_files (string replace -r '^[^=]*=' '' -- $word) '' |
                string replace -r '^' -- (string match -r '^[^=]*=' -- $word)
        case '*'
            __tolvik_files $word .a .o .lib .obj .tvk
    end
end

# Prints the value of the current option, which may follow a '='.
function __tolvik_value
    string unescape -- (commandline -ct) | string replace -r '^--[^=]*=' ''
end

complete -c tolvik -f -a '(__tolvik_candidates)'

complete -c tolvik-page -f -a '(__tolvik_files (commandline -ct) .tvk .html)'
complete -c tolvik-page -l title -x -d 'title of the page'
complete -c tolvik-page -l source-prefix -x -d 'text before the paths of sources'
complete -c tolvik-page -l under -d 'keep underscores around symbols'
complete -c tolvik-page -l symbols -x -d 'only what matching symbols link in' \
    -a '(__tolvik_names symbol (__tolvik_value))'
complete -c tolvik-page -l files -x -d 'only matching objects and what they link in' \
    -a '(__tolvik_names object (__tolvik_value))'
complete -c tolvik-page -l compare -x -d 'symbol file of an older build' \
    -a '(__tolvik_files (__tolvik_value) .tvk)'
complete -c tolvik-page -l json -d 'write the data as JSON'
complete -c tolvik-page -l fragment -d 'the files are HTML reports'
complete -c tolvik-page -l help -d 'print the usage'
complete -c tolvik-page -l version -d 'print the version'
