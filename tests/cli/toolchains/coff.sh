# The listing of COFF objects: what a linker sees of weak, common and absolute symbols, the sizes that
# `size` totals, and one message for any other file.
cat >probe.c <<'END'
int common_function_with_a_name_beyond_sixty_four_characters_so_that_it_is_long(void);
__attribute__((weak)) int weak(void) { return common_function_with_a_name_beyond_sixty_four_characters_so_that_it_is_long(); }
__attribute__((weak)) int missing_weak(void);
int x(void) { return missing_weak ? 1 : weak(); }
__asm__(".globl _absolute\n.set _absolute, 42\n.comm _common, 24, 2\n");
END
clang --target=i686-pc-windows-msvc -ffreestanding -c probe.c -o probe.obj
dumpbin /symbols /out:listing probe.obj
# A reader takes section, class and name at columns 13, 33 and 49.
awk '/SECT.* External  |UNDEF.* External  /{ print substr($0, 14, 5), substr($0, 34, 8), substr($0, 50) }' listing |
    grep -v refptr >seen
same "dumpbin" seen <<'END'
SECT- External _absolute
SECT- External _common
SECT1 External _weak
UNDEF External _common_function_with_a_name_beyond_sixty_four_characters_so_that_it_is_long
SECT1 External _x
END
[ "$(sed -n 3p listing)" = '    probe.c' ] || fail "no source"

# Sections with numbers of three digits, long names, COMDAT, thread-local data, debugging sections.
for i in $(seq 200); do echo "int f$i(int x) { return x * $i; }"; done >many.c
cat >mixed.cpp <<'END'
struct A { virtual int f(); virtual ~A(); int x; };
inline int g(int x) { static int n; return n += x; }
template <class T> T sum(T a) { static T t[20] = {1}; return t[3] += a; }
int A::f() { return g(x) + sum(x) + (int)sum(2.0 + x); }
A::~A() {}
thread_local int tls = 5;
extern const int table[40] = {1, 2, 3};
int zeros[100];
const char *text() { return "text"; }
END
for target in i686-pc-windows-msvc x86_64-pc-windows-msvc x86_64-w64-mingw32; do
    for options in -O0 '-O2 -g -ffunction-sections -fdata-sections'; do
        for source in many.c mixed.cpp; do
            # shellcheck disable=SC2086
            clang --target=$target -ffreestanding $options -c $source -o object.obj
            run -nologo -v0 -tpc -szzz object.obj=object.tvk
            [ "$(sed -n 's/^size=//p' object.tvk)" = "$(size object.obj | awk 'NR == 2 { print $4 }')" ] ||
                fail "$target $options $source: not the size"
        done
    done
    grep -q '^define=[_?]*tls,' object.tvk || fail "$target: no thread-local variable"
done

check() { # MESSAGE FILE: the message is the only one, and the listing is made.
    status=0
    rm -f listing
    dumpbin /symbols /out:listing "$2" 2>"$STATE/err" || status=$?
    [ $status = 1 ] || fail "$2: status $status"
    [ -f listing ] || fail "$2: no listing"
    expect_err <<END
dumpbin: $2$1
END
}
gcc -c probe.c -o elf.o
ar -rc libelf.a elf.o
ar -rc probe.lib probe.obj
clang --target=i686-pc-windows-msvc -flto -c probe.c -o lto.obj
head -c 100 probe.obj >sections.obj
head -c 500 probe.obj >symbols.obj
head -c -4 probe.obj >strings.obj
mkfifo fifo.obj
check ' is an ELF object, which -telf reads' elf.o
check ' holds ELF objects, which -telf reads' libelf.a
check ' is a library: it is read as one when it is named without directories or other dots' probe.lib
check ' is LLVM bitcode' lto.obj
check ' is no object' probe.c
check ': No such file or directory' absent.obj
check ': is no regular file' fifo.obj
check ': its section table ends beyond the file' sections.obj
check ': its symbol table ends beyond the file' symbols.obj
check ': its string table ends beyond the file' strings.obj
