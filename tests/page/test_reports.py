"""The page shows what the reports of tolvik show."""
import json
import re
import unittest
from urllib.parse import quote

from browser import PageTest, makeexample, makelibrary, makepage, run

TEXT = 'return document.querySelector("details.report textarea").value'


def addresses(data):
    """Returns the addresses of all symbols and of all objects, in the order of the data."""
    seen = {}
    objects = []
    for thing in data['objects']:
        library = data['libraries'][thing['library']] if 'library' in thing else None
        address = f'#object={quote(thing["name"], safe="")}'
        if library is not None:
            address += f'&library={quote(library, safe="")}'
        seen[address] = seen.get(address, 0) + 1
        objects.append(address if seen[address] == 1 else f'{address}&n={seen[address]}')
    return [f'#symbol={quote(name, safe="")}' for name in data['symbols']], objects


def split(report, title):
    """Returns the reports on the single symbols or files."""
    return re.split(f'(?=^\n{title}\n)', report, flags=re.MULTILINE)[1:]


def links(report):
    return report[report.index('\nLINKS IN\n'):]


class ReportsTest(PageTest):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.stores = {
            'engine': [[makeexample(cls.directory)]],
            'zlib': [[makelibrary(cls.directory, '/usr/lib/x86_64-linux-gnu/libz.a', '-under', '-libz')], '-under'],
            'generated': [['generated.tvk']],
        }
        with open(f'{cls.directory}/generated.tvk', 'w', encoding='latin-1') as file:
            file.write(run(cls.directory, 'symbolfile', 'product', '60', '150', '600'))

    def openstore(self, files, *options):
        """Opens the page of the files and the box of the text, which stays open; returns the data."""
        options = ['--under' if option == '-under' else option for option in options]
        self.open(makepage(self.directory, 'page.html', *options, *files))
        data = json.loads(run(self.directory, 'tolvik-page', '--json', *options, *files).encode('latin-1'))
        self.go([addresses(data)[0][0]], '')
        self.browser.find_element('css selector', 'details.report summary').click()
        self.until(TEXT)
        return data

    def reports(self, data, files, *options):
        """Returns the reports of tolvik as {address: text}."""
        report = ['tolvik', '-nologo', '-v2', *options]
        symbols, objects = addresses(data)
        return {**dict(zip(symbols, split(run(self.directory, *report, '-sall', *files), 'SYMBOL'), strict=True)),
                **dict(zip(objects, split(run(self.directory, *report, *files), 'FILE'), strict=True))}

    def compare(self, wanted, expected, part=str):
        for address, shown in zip(wanted, self.go(wanted, TEXT)):
            if part(shown) != part(expected[address]):
                self.assertEqual(part(expected[address]), part(shown), address)

    def test_every_symbol_and_object(self):
        for name, (files, *options) in self.stores.items():
            with self.subTest(name):
                expected = self.reports(self.openstore(files, *options), files, *options)
                self.compare(list(expected), expected)

    def test_part(self):
        """What the chosen things link in is the same in a part as in the whole."""
        files, *options = self.stores['zlib']
        expected = self.reports(self.openstore(files, *options), files, *options)
        for choice, size in [(['--symbols', 'inflate*'], 7), (['--files', 'gzl*.o'], 1), (['--files', 'Z'], 15)]:
            with self.subTest(choice):
                data = self.openstore(files, *options, *choice)
                self.assertEqual(size, len(data['objects']))
                symbols, objects = addresses(data)
                self.compare(symbols + objects, expected, links)

    def test_totals_of_a_large_library(self):
        """The overview's table has the total of each symbol's object."""
        files = [makelibrary(self.directory, '/usr/lib/x86_64-linux-gnu/libc.a', '-under')]
        data = self.openstore(files, '-under')
        lines = run(self.directory, 'tolvik', '-nologo', '-v1', '-under', '-sall', *files).splitlines()
        expected = {line.split()[0]: int(line.split()[-1]) for line in lines}
        self.go(['#all'], '')
        self.until('return !document.querySelector(".waits")')
        rows = self.browser.execute_async_script("""
            const done = arguments[0];
            const grid = document.querySelector('[role=grid][aria-label=Objects]');
            const frame = grid.parentNode;
            const rows = {};
            const column = [...grid.querySelectorAll('thead th')].findIndex(
                head => head.textContent === 'Links in (bytes)');
            const read = () => {
                for (const row of grid.querySelectorAll('tbody tr[aria-rowindex]'))
                    rows[row.querySelector('a').hash] = row.cells[column].textContent;
                if (frame.scrollTop + frame.clientHeight >= frame.scrollHeight - 1)
                    return done(rows);
                frame.scrollTop += frame.clientHeight;
                requestAnimationFrame(() => requestAnimationFrame(read));
            };
            read();""")
        objects = addresses(data)[1]
        self.assertEqual(set(objects), set(rows))
        definers = {}
        for address, thing in zip(objects, data['objects']):
            for symbol, *_ in thing['defines']:
                definers.setdefault(data['symbols'][symbol], address)
        shown = {name: int(rows[definers[name]].replace(',', '')) if name in definers else 0
                 for name in data['symbols']}
        self.assertEqual(expected, {name: shown[name] for name in expected})
        self.assertEqual(0, sum(shown[name] for name in shown.keys() - expected.keys()))
        report = run(self.directory, 'tolvik', '-nologo', '-under', '-sprintf', '-links', *files)
        self.compare(['#symbol=printf'], {'#symbol=printf': report}, lambda text: text.splitlines()[-2:])
        total = self.js('return document.querySelector("main .total").textContent')
        self.assertIn(f'{expected["printf"]:,} bytes', total)


if __name__ == '__main__':
    unittest.main()
