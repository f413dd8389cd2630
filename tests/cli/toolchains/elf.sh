# What elfdump, gc-objdump and ee-objdump list of ELF objects and libraries.
cat >probe.s <<'END'
.globl hidden, weak, common, indirect, version, label, words, thread
.hidden hidden
.weak weak, missing_weak
.type hidden, @function
.type weak, @function
.type indirect, @gnu_indirect_function
.type single, @gnu_unique_object
hidden: nop
weak: nop
indirect: nop
label: nop
local:
version: .long missing, missing_weak
.symver version, other@@V1
.comm common, 12, 4
.section "two words","aw"
words: .fill 70000, 1, 65
.asciz "cmn/late.c"
single: .zero 16
.section .tbss,"awT",@nobits
.type thread, @tls_object
thread: .zero 8
.size hidden, 1
END
as --32 probe.s -o probe.o 2>/dev/null

# tabs are shown as '|'
gc-objdump -t probe.o | grep -Ev 'local|label|thread|version' | tr '\t' '|' >seen
same "gc-objdump" seen <<'END'

probe.o:     file format elf32-i386

SYMBOL TABLE:
00000000 g     F .text|00000001 hidden
00000001 g     F .text|00000000 weak
00000004 g     O *COM*|0000000c common
00000002 g     F .text|00000000 indirect
00000000 g       two_words|00000000 words
0001117b g     O two_words|00000000 single
00000000         *UND*|00000000 missing
00000004 g       .text|00000000 other


END
ee-objdump --syms --full-contents probe.o >listing
grep -E 'common|missing|Contents|0000 00000000' listing | tr '\t' '|' >seen
same "ee-objdump" seen <<'END'
0000000000000004 g     O *COM*|000000000000000c common
0000000000000000         *UND*|0000000000000000 missing
Contents of section .text:
 0000 90909090 00000000 00000000           ............    
Contents of section two words:
 1170 636d6e2f 6c617465 2e630000 00000000  cmn/late.c......
 1180 00000000 00000000 000000             ...........     
END
elfdump -t probe.o | grep -v NOTYPE >seen
same "elfdump" seen <<'END'

probe.o:

[1] *ABS* 0x00000000 0 LOCAL SECTION ABS
[2] .text 0x00000000 12 LOCAL SECTION .text
[3] .data 0x00000000 0 LOCAL SECTION .data
[4] .bss 0x00000000 0 LOCAL SECTION .bss
[5] two_words 0x00000000 70027 LOCAL SECTION two_words
[6] .tbss 0x00000000 8 LOCAL SECTION .tbss
[7] hidden 0x00000000 1 GLOB FUNC .text
[8] weak 0x00000001 0 GLOB FUNC .text
[9] common 0x00000004 12 GLOB OBJECT COMMON
[10] indirect 0x00000002 0 GLOB FUNC .text
[11] version 0x00000004 0 GLOB FUNC .text
[12] label 0x00000003 0 GLOB FUNC .text
[13] words 0x00000000 0 GLOB OBJECT two_words
[14] thread 0x00000000 0 GLOB OBJECT .tbss
[16] single 0x0001117b 0 GLOB OBJECT two_words
[17] missing 0x00000000 0 GLOB FUNC UNDEF
[18] other 0x00000004 0 GLOB FUNC .text
END

# More sections than the header and the symbols have room for, and names longer than lines.
long=$(printf '%0500d' 7)
{
    for i in $(seq 66000); do echo ".section s$i,\"ax\""; done
    echo 'nop; .globl last; last:'
    echo ".globl L$long; L$long: .space 40; .section .long_section_name_$long,\"aw\"; .quad other"
} | as -o many.o -
run -nologo -v0 -tsgi -slast many.o
[ "$(sed -n 's/^size=//p' many.tvk)" = "$(size many.o | awk 'NR == 2 { print $4 }')" ] || fail "not the size"
grep '^define\|^refer' many.tvk | cut -c -20 >seen
same "66000 sections" seen <<'END'
define=last,FUNCTION
define=L000000000000
refer=other
END

# check STATUS MESSAGES PROGRAM...: standard error holds the messages; standard output is in listing.
check() {
    expected=$1
    echo "$2" >"$STATE/messages"
    shift 2
    status=0
    "$@" >listing 2>"$STATE/err" || status=$?
    [ $status = "$expected" ] || fail "$*: status $status"
    expect_err <"$STATE/messages"
}

# Thin libraries: the members are files.
mkdir -p sub/dir
echo 'int f(void); int g(void) { return f(); }' >g.c
gcc -c g.c -o sub/g.o
gcc -c -flto -fno-fat-lto-objects g.c -o sub/slim.o
clang -c -flto g.c -o sub/bitcode.o
gcc -c -x c /dev/null -o sub/empty.o
clang --target=i686-pc-windows-msvc -c g.c -o sub/coff.o
cp sub/g.o sub/name_longer_than_its_field.o
ar -rc sub/inner.a probe.o sub/name_longer_than_its_field.o
ar -rcT sub/thin.a sub/g.o sub/slim.o sub/bitcode.o sub/empty.o sub/coff.o sub/inner.a
check 1 'elfdump: sub/thin.a(slim.o): holds only intermediate code (-flto without -ffat-lto-objects)
elfdump: sub/thin.a(bitcode.o): holds only intermediate code (LLVM bitcode)
elfdump: sub/thin.a(empty.o): has no global symbols
elfdump: sub/thin.a(coff.o): is no ELF object' elfdump -t sub/thin.a
grep -E ':$| g 0x' listing >seen
same "the thin library's members" seen <<'END'
g.o:
[6] g 0x00000000 11 GLOB FUNC .text
empty.o:
probe.o:
name_longer_than_its_field.o:
[6] g 0x00000000 11 GLOB FUNC .text
END
printf 'fifo.o/\ndir/\ngone.o/\nbad.a/\n' >names
{
    printf '!<thin>\n%-48s%-10s`\n' // "$(wc -c <names)"
    cat names
    for at in 0 8 13 21; do printf '%-48s%-10s`\n' /$at 100; done
} >sub/bad.a
mkfifo sub/fifo.o
check 1 'elfdump: sub/bad.a(fifo.o): is no regular file
elfdump: sub/bad.a(dir): is no regular file
elfdump: sub/bad.a(gone.o): No such file or directory
elfdump: sub/bad.a(bad.a): is no ELF object' elfdump -t sub/bad.a

# Files of another kind.
ar -rc coff.lib sub/coff.o
library='is a library: it is read as one when it is named without directories or other dots, or with -telf, which takes any'
check 1 "gc-objdump: sub/inner.a $library" gc-objdump -t sub/inner.a
check 1 "ee-objdump: sub/thin.a $library" ee-objdump --syms --full-contents sub/thin.a
[ ! -s listing ] || fail "a library was listed"
check 1 'elfdump: coff.lib holds COFF objects, which -tpc reads' elfdump -t coff.lib
check 1 'gc-objdump: sub/coff.o is a COFF object, which -tpc reads' gc-objdump -t sub/coff.o
check 1 'gc-objdump: sub/bitcode.o is LLVM bitcode' gc-objdump -t sub/bitcode.o
check 1 'elfdump: g.c is no object' elfdump -t g.c
check 1 'elfdump: absent.o: No such file or directory' elfdump -t absent.o
check 2 'usage: elfdump -t FILE' elfdump probe.o

# Objects and libraries that end early: one message, a status of 1, no more.
for file in sub/g.o sub/inner.a; do
    size=$(wc -c <$file)
    for part in 1 30 63 64 90 200 400 600 $((size - 700)) $((size - 64)) $((size - 1)); do
        head -c $part $file >cut
        for program in 'elfdump -t' 'gc-objdump -t' 'ee-objdump --syms --full-contents'; do
            status=0
            # shellcheck disable=SC2086
            $program cut >listing 2>"$STATE/err" || status=$?
            [ $status = 1 ] && [ "$(wc -l <"$STATE/err")" = 1 ] ||
                fail "$program on $part bytes of $file: status $status, $(cat "$STATE/err")"
        done
    done
done

# A name of 180 characters, also in its section's name, is read whole from every listing.
name=$(printf '%0180d' 0 | tr 0 x)
echo "int $name(void) { return 1; }" >long.c
echo "int $name(void); int h(void) { return $name(); }" >user.c
gcc -ffunction-sections -c long.c user.c
for type in gc ps2 sgi; do
    run -v1 -t$type -ref -s"$name" long.o=long.tvk user.o
    run -v1 -ref -def -s"$name" long.tvk
    expect_has out "long.o        1 refs"
done
