# The run that the README shows is a real one. Sizes are the compiler's business.
"$TOLVIK_SOURCE/script/example-library" . >/dev/null
run -v0 -tgc libengine.a=libengine.tvk
expect_silence
sizeless() { sed 's/[0-9][0-9]*/N/g'; }
sed -n '/^\$ tolvik /,/^```/p' "$TOLVIK_SOURCE/README.md" | sed '1d;/^```/d' | sizeless >shown
# shellcheck disable=SC2046
run $(sed -n 's/^\$ tolvik //p' "$TOLVIK_SOURCE/README.md")
sizeless <"$STATE/out" >seen
# The order of the objects in the library's directory is the file system's, and so is that of
# the references.
sed '/^LINKS IN/,$d' seen | sort >seen-above
sed '/^LINKS IN/,$d' shown | sort >shown-above
expect_file seen-above <shown-above
sed -n '/^LINKS IN/,$p' seen >seen-links
sed -n '/^LINKS IN/,$p' shown >shown-links
expect_file seen-links <shown-links
