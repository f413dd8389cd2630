# The run that the README shows is a real one. Sizes are the compiler's business.
"$TOLVIK_SOURCE/script/example-library" . >/dev/null
sizeless() { sed 's/[0-9][0-9]*/N/g'; }
# shellcheck disable=SC2046
run $(sed -n 's/^\$ tolvik //p' "$TOLVIK_SOURCE/README.md")
expect_err </dev/null
sizeless <"$STATE/out" >seen
sed -n '/^\$ tolvik /,/^```/p' "$TOLVIK_SOURCE/README.md" | sed '1d;/^```/d' | sizeless >shown
expect_file seen <shown
