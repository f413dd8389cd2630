"""manual.py SOURCE BUILD: runs the examples of the manual pages and compares their output with the
pages. Compares the options and messages of the programs with the pages and with the completions."""
import glob
import os
import re
import subprocess
import sys
import tempfile

source, build = sys.argv[1:]
failures = []


def check(what, actual, expected):
    if actual != expected:
        failures.append(f"{what}:\n{actual}\nexpected:\n{expected}\n")


def read(path):
    with open(os.path.join(source, path)) as file:
        return file.read()


def run(command, **more):
    return subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True,
                          stdin=subprocess.DEVNULL, timeout=60, **more).stdout


def rendered(page):
    return re.sub(".\b", "", run(["mandoc", "-T", "ascii", "-O", "width=500", f"{source}/man/{page}"]))


def exists(program):
    return os.access(f"{build}/{program}", os.X_OK)


def stripped(text):
    return re.sub(" +$", "", text, flags=re.M).strip("\n")


def examples(page):
    """Yields each command of the page and its output."""
    section = re.search(r"^EXAMPLES\n(.*?)^\S", rendered(page), re.M | re.S)[1]
    for block in re.split(r"^ {5}\S.*", section, flags=re.M):
        for example in re.split(r"^ {11}\$ ", block, flags=re.M)[1:]:
            lines = re.sub("^ {11}", "", example, flags=re.M).split("\n")
            count = 1 + next((i for i, line in enumerate(lines) if not line.endswith("\\")), 0)
            if "<<END" in lines[0]:
                count = lines.index("END") + 1
            yield "\n".join(lines[:count]), stripped("\n".join(lines[count:]))


def run_examples():
    path = f"{build}:{build}/toolchains:{os.environ['PATH']}"
    environment = {"PATH": path, "LC_ALL": "C", "HOME": "/"}
    for page in sorted(os.listdir(f"{source}/man")):
        if page == "tolvik-page.1" and not exists("tolvik-page"):
            continue
        with tempfile.TemporaryDirectory() as directory:
            run([f"{source}/script/example-library", directory])
            for command, output in examples(page):
                actual = run(["sh", "-c", command], cwd=directory, env=environment)
                check(f"{page}: {command}", stripped(actual), output)


def known_options():
    """Returns the options in the tables of tolvik, '#' for a number, and its types."""
    tool, framework = read("src/tool/callbacks.cpp"), read("src/brax/builtin.cpp")
    types = set(re.findall(r'\{"(\w+)", OBJTYPE', tool))
    words = set(re.findall(r'\{"(\w+)", \{&|isword\(text, "(\w+)"\)|case \'(\w)\'', tool))
    tooloptions = {"".join(word) for word in words}
    long = re.search(r"optlong\(.*?^}", framework, re.M | re.S)[0]
    words = set(re.findall(r'beginswith\(text, "(\w+)"\)', framework))
    letters = set(re.findall(r"case '([bhrvw.=?])'", framework))
    # The tool's options of one letter come before those of the framework.
    hidden = {word for word in words if word[0] in "sfl" and word != "sort"}
    longs = {"-" + word for word in re.findall(r'beginswith\(text, "(\w+)"\)', long)}
    return (tooloptions | words | letters | longs | {"#"}) - hidden, types


def manual_options(page):
    found = re.findall(r"(?:^\.It|,) Fl ([^A\s]\S*)", read(f"man/{page}"), re.M)
    return {"#" if option == "Ns" else option.replace("\\&", "") for option in found}


def completed_options(command):
    """Returns the options that each shell completes."""
    files = {"bash": "tolvik.bash", "fish": "tolvik.fish", "zsh": "_tolvik"}
    zsh = re.findall(r"'\*?(--?[^:'\[*]+?)=?[:\[]", read("completions/_tolvik"))
    dashes = "--" if command == "tolvik-page" else "-"
    bash = f". completions/tolvik.bash; _tolvik_candidates {command} {dashes} x"
    fish = f"source completions/tolvik.fish; complete -C'{command} {dashes}'"
    page = set(re.findall(r"--[a-z-]+", read("completions/_tolvik").split("_tolvik()")[0]))
    zsh = page if command == "tolvik-page" else set(zsh) - page | {"--help", "--version"}
    return {"bash": set(run(["bash", "-c", bash], cwd=source).split()),
            "fish": set(re.findall(r"^\S+", run(["fish", "--no-config", "-c", fish], cwd=source), re.M)),
            "zsh": zsh}


def compare_options():
    known, types = known_options()
    check("options of tolvik.1", manual_options("tolvik.1"), known)
    for line in re.findall(r"^\.It Cm (.*?) Ta", read("man/tolvik.1"), re.M):
        types -= set(re.split(r"[ ,]+", line))
    check("types that tolvik.1 lacks", types, set())
    types = known_options()[1]
    accepted = {"t" + name for name in types} | known - {"t"}
    for shell, options in completed_options("tolvik").items():
        names = {option[1:] if option[1:] in accepted else option[1:].rstrip("0123456789") or "#"
                 for option in options}
        check(f"options in {shell}", names - {"sall"}, accepted)
    for option in accepted - {"help", "version", "#"}:
        check(f"-{option}", "UNKNOWN" in run([f"{build}/tolvik", "-v1", "-" + option, "name"]), False)
    if exists("tolvik-page"):
        known = set(re.findall(r"--[a-z-]+", run([f"{build}/tolvik-page", "--help"])))
        check("tolvik-page.1", {"-" + name for name in manual_options("tolvik-page.1")}, known)
        for shell, options in completed_options("tolvik-page").items():
            check(f"options of tolvik-page in {shell}", options, known)


def compare_messages():
    """Checks that the constant parts of each message are in a page."""
    pages = " ".join(" ".join(rendered(page).split()) for page in os.listdir(f"{source}/man"))
    texts = r'((?:"(?:[^"\\]|\\.)*"\s*)+)'
    # No option of tolvik evaluates expressions, saves files or has a range as value.
    unused = re.compile("NOT INITIALIZED|No version number|CANT FIND BROWSER|COULD NOT|in expression:|"
                        "Invalid rule|write warning|INVALID SIZE|gfree - ")
    for path in glob.glob(f"{source}/src/*/*.cpp") + glob.glob(f"{source}/toolchains/**/*.cpp", recursive=True):
        if re.search(r"/(expr|range)/", path):
            continue
        call = r'(?:toolsay|BRAX_say|gprintf)\(\s*' if "/src/" in path else r"(?:[(,:?=]|return)\s*"
        for match in re.findall(call + texts, read(path)):
            message = re.sub(r'"\s*"', "", match.strip()[1:-1])
            if "/src/" not in path and not re.match("(is|has|holds|its|could|cannot|auxiliary|a name) ", message):
                continue
            for part in re.split(r"%[-.*\d]*l?l?[a-z]|\\n|\\\"|%%", message):
                part = " ".join(part.split())
                if len(part) > 7 and part not in pages and not unused.search(message):
                    failures.append(f"{path}: no page has '{part}'")


run_examples()
compare_options()
compare_messages()
sys.exit("\n".join(failures) or 0)
