# An interrupt from the keyboard reaches the shell and the program and ends the run by its signal. The
# symbol file that the run began is removed, an older one is cut to its length.
PATH=$TOLVIK_SOURCE/tests/cli/bin:$PATH
printf '\n1\n\nSYMBOL TABLE:\n00000000 g     F .text\t00000004 f\n' >a.o
cp a.o B.o
tar cf lib.a a.o B.o
printf '[old.o]\nsize=1\n' >old.tvk
cp old.tvk "$STATE/old.tvk"
for signal in 2 3; do
    export STUB_SAY_DUMP="case \$last in b.o) ulimit -c 0; kill -$signal \$PPID \$\$ ;; esac"
    for source in lib.a B.o; do
        run -v1 -tgc a.o=new.tvk "$source"
        expect_status $((128 + signal))
        run -v1 -tgc -append a.o=old.tvk "$source"
        expect_status $((128 + signal))
        same old.tvk old.tvk <"$STATE/old.tvk"
        expect_files B.o a.o lib.a old.tvk
    done
done
STUB_SAY_DUMP='kill -INT $PPID $$' run -v1 -tsgi a.o=new.tvk
expect_status 130
expect_err </dev/null
unset STUB_SAY_DUMP
STUB_SAY_EXTRACT='kill -INT $PPID $$' run -v1 -tgc lib.a=new.tvk
expect_status 130
expect_files B.o a.o lib.a old.tvk
# A status of 130 is not a signal.
STUB_SAY_DUMP='exit 130' run -v1 -tgc lib.a=new.tvk
expect_status 0
expect_files B.o a.o lib.a new.tvk old.tvk
