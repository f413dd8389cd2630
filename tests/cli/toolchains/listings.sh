# Bad input of the librarians and of reverse gives one message and a status of 1; netscape opens a page.
check() { # STATUS MESSAGE PROGRAM...
    expected=$1
    said=$2
    shift 2
    status=0
    "$@" >/dev/null 2>"$STATE/err" || status=$?
    [ $status = "$expected" ] || fail "$*: status $status"
    expect_has err "$said"
}
printf 'PSXOBJ1\0C:\\LIB\\A.C:\0D\1\0\0\0\377\0abc' >short.o
printf '!<arch>\n%-48s%-10s`\nabc' x.o 4000 >short.lib
gcc -c -x c /dev/null -o probe.o
mkdir out
check 1 'reverse: short.o: is damaged' reverse /nop /macro short.o
check 1 'reverse: probe.o is an ELF object, which -telf reads' reverse /nop /macro probe.o
check 1 'short.lib: is damaged, the rest is left out' wlib -d=out -x short.lib
check 1 'probe.o: is no library' psylib /x /q probe.o
check 1 'absent.lib' ee-ar x absent.lib
mkdir bin
printf '#!/bin/sh\nprintf "%%s\\n" "$@" >opened\n' >bin/xdg-open
chmod +x bin/xdg-open
PATH=$(pwd)/bin:$PATH netscape 'help/util/x.htm#a'
expect_file opened <<'END'
help/util/x.htm#a
END
