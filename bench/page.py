"""Prints how long a page of 20,000 objects and 300,000 references takes in a headless Chromium."""
import json
import pathlib
import statistics
import sys
import tempfile

sys.path.insert(0, str(pathlib.Path(__file__).parents[1] / 'tests/page'))

from browser import makepage, run, setscreen, start

OBJECTS = 20000
ROUNDS = 7
PAINT = 'return performance.getEntriesByName("first-contentful-paint")[0]?.startTime ?? 0'

# Returns the milliseconds from a change, or without one from the start of the page, to the end of the
# frame that shows it.
CHANGE = '''
    const [change, shown, done] = arguments;
    const isshown = new Function(`return ${shown}`);
    const begin = change === '' ? 0 : performance.now();
    const end = () => setTimeout(() => done(performance.now() - begin));
    const watch = () => requestAnimationFrame(isshown() ? end : watch);
    new Function(change)();
    watch();'''
TREEMAP = 'document.querySelectorAll(".cell").length > 10'
TYPE = '''
    const field = document.getElementById("text");
    field.value = "SYMBOL".slice(0, 6);
    field.dispatchEvent(new Event("input"));'''
CHANGES = [
    ('page to its treemap', '', TREEMAP),
    ('page to all sums of its overview', '', '!document.querySelector(".waits") && '
     '[...document.querySelectorAll("td")].every(cell => cell.textContent !== "…")'),
    ('letter to the results of the search', TYPE, 'document.querySelector("h1").textContent.startsWith("Search") && '
     'document.querySelector(".row a")'),
    ('link to the tree and picture of a symbol', 'location.hash = "#symbol=SYMBOL"',
     'document.querySelector("[role=treeitem]") && document.querySelector(".cell")'),
    ('link to the treemap', 'location.hash = "#all"', TREEMAP),
]


def main():
    with tempfile.TemporaryDirectory(prefix='tolvik-page.') as directory:
        store = pathlib.Path(directory, 'large.tvk')
        store.write_text(run(directory, 'symbolfile', 'product', str(OBJECTS), '100000', '300000'), 'latin-1')
        page = makepage(directory, 'large.html', store.name)
        symbols = json.loads(run(directory, 'tolvik-page', '--json', store.name))['symbols']
        browser = start(f'{directory}/profile')
        setscreen(browser, 'light', 1280)
        times = {}
        for i in range(ROUNDS):
            browser.get('about:blank')
            browser.get(page)
            times.setdefault('page to its first paint', []).append(browser.execute_script(PAINT))
            symbol = symbols[i * len(symbols) // ROUNDS]
            for name, change, shown in CHANGES:
                change = change.replace('SYMBOL', symbol)
                times.setdefault(name, []).append(browser.execute_async_script(CHANGE, change, shown))
        browser.quit()
        print('| from | median | longest |\n|---|---:|---:|')
        for name, values in times.items():
            print(f'| {name} | {statistics.median(values):.0f} ms | {max(values):.0f} ms |')
        size = pathlib.Path(directory, 'large.html').stat().st_size
        print(f'\n{size:,} bytes, {size / OBJECTS:.0f} for each object')


main()
