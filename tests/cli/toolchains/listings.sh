# What the stand-ins print where today's programs and those of old differ.
cat >probe.s <<'END'
.globl hidden, weak, common, indirect, version
.hidden hidden
.weak weak, missing_weak
.type hidden, @function
.type weak, @function
.type indirect, @gnu_indirect_function
hidden: nop
weak: nop
indirect: nop
version: .long missing, missing_weak
.symver version, other@@V1
.comm common, 12, 4
.section "two words","aw"
.fill 70000, 1, 65
.asciz "cmn/late.c"
.zero 16
.size hidden, 1
END
as --32 probe.s -o probe.o 2>/dev/null

# tabs are shown as '|'
gc-objdump -t probe.o | grep -E 'hidden|weak|common|indirect|other|missing|two' | tr '\t' '|' >seen
same "gc-objdump" seen <<'END'
00000000 g     F .text|00000001 hidden
00000001 g     F .text|00000000 weak
00000004 g     O *COM*|0000000c common
00000002 g     F .text|00000000 indirect
00000000         *UND*|00000000 missing
00000003 g       .text|00000000 other
END
ee-objdump --syms --full-contents probe.o >listing
grep -E 'common|missing' listing | tr '\t' '|' >seen
same "ee-objdump's symbols" seen <<'END'
0000000000000004 g     O *COM*|000000000000000c common
0000000000000000         *UND*|0000000000000000 missing
END
[ "$(cut -c 44-59 listing | grep -c 'cmn/late.c')" = 1 ] || fail "the text's column moves"
elfdump -t probe.o | grep -v NOTYPE | grep -E 'SECTION two|hidden|weak|missing|common' >seen
same "elfdump" seen <<'END'
[5] two_words 0x00000000 70027 LOCAL SECTION two_words
[6] hidden 0x00000000 1 GLOB FUNC .text
[7] weak 0x00000001 0 GLOB FUNC .text
[8] common 0x00000004 12 GLOB OBJECT COMMON
[12] missing 0x00000000 0 GLOB FUNC UNDEF
END

# Bad input: one message, a status, and no more.
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
tools=$(dirname "$(command -v gc-objdump)")
mkdir out
check 1 'reverse: short.o: is damaged' reverse /nop /macro short.o
check 1 'reverse: probe.o is an ELF object, which -telf reads' reverse /nop /macro probe.o
check 1 'short.lib: is damaged, the rest is left out' wlib -d=out -x short.lib
check 1 'probe.o: is no library' psylib /x /q probe.o
check 1 'absent.lib' ee-ar x absent.lib
check 1 'absent.o' gc-objdump -t absent.o
check 2 'usage: elfdump' elfdump probe.o
for program in 'gc-objdump -t' 'elfdump -t' 'ee-objdump --syms --full-contents'; do
    # shellcheck disable=SC2086
    check 127 'needs objdump' env PATH="$tools" $program probe.o
done
mkdir bin
printf '#!/bin/sh\nprintf "%%s\\n" "$@" >opened\n' >bin/xdg-open
chmod +x bin/xdg-open
PATH=$(pwd)/bin:$PATH netscape 'help/util/x.htm#a'
expect_file opened <<'END'
help/util/x.htm#a
END
