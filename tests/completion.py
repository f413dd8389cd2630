"""completion.py SOURCE: types lines with tabs into interactive shells and compares the arguments that a
command gets."""
import os
import pty
import select
import shutil
import sys
import tempfile
import time

completions = os.path.join(sys.argv[1], "completions")
big = 100 * 1000 * 1000

# Typed lines, and the arguments that the command gets, without a last '/' or '='. A tab completes.
CASES = [
    # Names from symbol files: quoted, divided at ':' and '@', without underscores, in quotes.
    ("tolvik x.tvk -swei\t", "x.tvk|-swei$rd;name()"),
    ('tolvik x.tvk "-swei\t', "x.tvk|-swei$rd;name()"),
    ("tolvik x.tvk -s'?f@\t", "x.tvk|-s?f@@YAXXZ"),
    ("tolvik x.tvk -sstd::o\t", "x.tvk|-sstd::one"),
    ("tolvik x.tvk -spla\t", "x.tvk|-splain"),
    ("tolvik -under x.tvk -spla\t", "-under|x.tvk|-splain_"),
    ("tolvik x.tvk -sx.\t", "x.tvk|-sx."),
    ("tolvik -swei x.tvk" + 6 * "\x02" + "\t", "-swei$rd;name()|x.tvk"),
    # The symbol file as destination, in a response file, of an earlier import, and large.
    ("tolvik lib.a=x.tvk -fwei\t", "lib.a=x.tvk|-fweird file.o"),
    ("tolvik @list -sit\t", "@list|-sit's"),
    ("tolvik x.a -fpl\t", "x.a|-fplain.o"),
    ("tolvik large.tvk -szeb\t", "large.tvk|-szebra"),
    ("tolvik large.tvk -sfill\t", "large.tvk|-sfiller"),
    # Files by extension, destinations, directories, options.
    ("tolvik lib\t", "lib.a"),
    ("tolvik my\t", "my file.tvk"),
    ("tolvik @lis\t", "@list"),
    ("tolvik lib.a=fo\t", "lib.a=foo.txt"),
    ("tolvik -=fo\t", "-=foo.txt"),
    ("tolvik -rsub\\;sub\t", "-rsub;sub dir"),
    ("tolvik -def lib.a -tel\t", "-def|lib.a|-telf"),
    ("tolvik-page x.tvk --symbols pla\t", "x.tvk|--symbols|plain"),
    ("tolvik-page x.tvk --files=pla\t", "x.tvk|--files=plain.o"),
    ("tolvik-page x.tvk --comp\t", "x.tvk|--compare"),
    ("tolvik-page --compare x\t", "--compare|x.tvk"),
]

SHELLS = {
    "bash": (["bash", "--norc", "--noprofile", "-i"], f"""
tolvik() {{ local IFS='|'; echo "[[$*]]"; }}
tolvik-page() {{ tolvik "$@"; }}
. {completions}/tolvik.bash
"""),
    "zsh": (["zsh", "-f", "-i"], f"""
tolvik() {{ echo "[[${{(j:|:)@}}]]"; }}
tolvik-page() {{ tolvik "$@"; }}
fpath=({completions} $fpath); autoload -U compinit; compinit -u -D
"""),
    "fish": (["fish", "--no-config", "-i"], f"""
function tolvik; echo '[['(string join '|' -- $argv)']]'; end
function tolvik-page; tolvik $argv; end
source {completions}/tolvik.fish
"""),
}


def make_files():
    with open("x.tvk", "w") as file:
        file.write("[weird file.o][l]\ndefine=_wei$rd;name(),FUNCTION,GLOBAL,4\ndefine=std::one,DATA\n"
                   "define=?f@@YAXXZ,FUNCTION\nrefer=it's\n[plain.o]\ndefine=plain_,FUNCTION\n"
                   "define=xyz,FUNCTION\n")
    with open("large.tvk", "w") as file:
        file.write("refer=filler\n" * (big // 13) + "define=zebra,FUNCTION,GLOBAL,1\n")
    shutil.copy("x.tvk", "my file.tvk")
    with open("list", "w") as file:
        file.write("-v1 x.tvk")
    os.mkdir("sub dir")
    for name in ["lib.a", "lib.txt", "foo.txt"]:
        open(name, "w").close()


class Shell:
    def __init__(self, command, setup):
        self.pid, self.terminal = pty.fork()
        if self.pid == 0:
            os.execvpe(command[0], command, dict(os.environ, TERM="dumb", HOME=os.getcwd()))
        self.type(setup + "tolvik ready\n")
        self.wait("[[ready]]")

    def type(self, text):
        os.write(self.terminal, text.encode())

    def wait(self, *texts, seconds=20):
        """Reads until one of the texts has arrived. Returns the output."""
        output = ""
        end = time.time() + seconds
        while time.time() < end and not any(text in output for text in texts):
            if select.select([self.terminal], [], [], 0.1)[0]:
                output += os.read(self.terminal, 65536).decode(errors="replace")
        return output


def main():
    failures = []
    for name, (command, setup) in SHELLS.items():
        shell = Shell(command, setup)
        for typed, expected in CASES:
            if name == "fish" and "\x02" in typed:
                continue  # it shows only the words before the cursor to completions
            shell.type(typed + "\n")
            output = shell.wait("]]")
            actual = output[output.rfind("[[") + 2:output.rfind("]]")].rstrip("/=")
            if actual != expected:
                failures.append(f"{name}: {typed!r}: {actual!r}, expected {expected!r}")
        shell.type("exit\n")
        os.waitpid(shell.pid, 0)
    sys.exit("\n".join(failures) or 0)


with tempfile.TemporaryDirectory() as directory:
    os.chdir(directory)
    make_files()
    main()
