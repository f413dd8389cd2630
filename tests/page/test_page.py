"""The page under the keyboard, with foreign names, and by the rules of its policy and of accessibility."""
import base64
import hashlib
import json
import pathlib
import re
import unittest
from urllib.parse import quote

from selenium.webdriver.common.action_chains import ActionChains
from selenium.webdriver.common.keys import Keys
from selenium.webdriver.support.wait import WebDriverWait

from browser import TOP, PageTest, makeexample, makepage, run, setscreen

AXE = TOP / 'tests/page/node_modules/axe-core/axe.min.js'
FOCUS = '''
    const active = document.activeElement;
    const style = getComputedStyle(active);
    const cell = active.querySelector('.cell-active .cell-fill');
    return active !== document.body && active.isConnected && (['H1', 'MAIN'].includes(active.tagName) ||
        (style.outlineStyle !== 'none' && parseFloat(style.outlineWidth) >= 1) ||
        (cell !== null && parseFloat(getComputedStyle(cell).strokeWidth) >= 2));'''
HASH = 'return decodeURIComponent(location.hash)'
TITLE = 'return document.querySelector("h1").textContent'
ACTIVE = 'return document.activeElement.textContent'
ROW = 'return document.activeElement.closest("[role=treeitem]").querySelector(".name > a").textContent'
SORT = 'return document.activeElement.closest("th").ariaSort'
EXPANDED = 'return document.activeElement.ariaExpanded'
SELECTED = 'return document.querySelector(".cell-selected").getAttribute("aria-label")'
LINE = 'return document.querySelector(".picture-line").textContent.split(":")[0]'
WHOLE = '''return [...document.querySelectorAll(".treemap .picture-view, .whole")].every(
    view => view.scrollHeight === view.clientHeight);'''
INK = 'return parseInt(getComputedStyle(document.body).color.slice(4))'
FROM = 'return document.querySelector("input[role]").value'
CHAIN = 'return [...document.querySelectorAll(".chain a:last-of-type")].map(link => link.textContent)'

HOSTILE = ['</script><script>window.ran=1//', '<img/src=x/onerror=window.ran=1>', '"><svg/onload=window.ran=1>',
           "'`${window.ran=1}", 'javascript:window.ran=1', '__proto__', 'constructor', 'toString', 'a\u2028b', '<!--',
           'é\u202e☃', '&amp;', '&n=2', 'a=b&library=c', '%', '%41', '#all', '(x)', '../..', 'A']
VIEW = '''
    const main = document.querySelector('main');
    const foreign = 'img, iframe, object, embed, base, [onload], [onerror], [style*=url], main script, main style';
    return {
        title: document.querySelector('h1').textContent,
        text: [main.textContent, ...[...main.querySelectorAll('input')].map(({value}) => value)].join('\\n'),
        foreign: [...document.querySelectorAll(foreign)].map(({outerHTML}) => outerHTML),
        ran: window.ran,
        links: [...main.querySelectorAll('a')].map(link => [link.textContent, link.getAttribute('href')]),
    };'''

POLICY = "default-src 'none'; script-src 'sha256-{}'; style-src 'sha256-{}'; base-uri 'none'; form-action 'none'"
ATTEMPTS = [
    'add("script", {textContent: "window.ran = 1"})', 'add("script", {src: "https://example.org/"})',
    'add("style", {textContent: "* { color: red }"})', 'add("img", {src: "https://example.org/"})',
    'add("base", {href: "https://example.org/"})',
    'document.body.setAttribute("onclick", "window.ran = 1"); document.body.click()',
    'add("a", {id: "run", href: "javascript:window.ran = 1"}); document.getElementById("run").click()',
    'setTimeout("window.ran = 1")', 'fetch("https://example.org/").catch(() => {})',
    'navigator.sendBeacon("https://example.org/")',
    'add("form", {id: "form", action: "https://example.org/"}); document.getElementById("form").submit()',
    'new Worker("data:text/javascript,1")',
]


class PagesTest(PageTest):
    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.example = makeexample(cls.directory)
        cls.page = makepage(cls.directory, 'example.html', cls.example)

    def press(self, *keys):
        ActionChains(self.browser, 0).send_keys(*keys).perform()

    def tabto(self, selector):
        """Presses Tab until the focus is in the element."""
        for _ in range(200):
            if self.js('return document.activeElement.closest(arguments[0]) !== null', selector):
                return
            self.press(Keys.TAB)
        self.fail(f'Tab does not reach {selector}')

    def steps(self, steps):
        """Presses the keys of each step; then its script returns its value, and the focus is seen."""
        for keys, script, expected in steps:
            if keys.startswith('to '):
                self.tabto(keys[3:])
            elif keys in ('back', 'forward'):
                getattr(self.browser, keys)()
            else:
                self.press(keys)
            shown = None
            for _ in range(100):
                shown = self.js(script)
                if shown == expected:
                    break
            self.assertEqual(expected, shown, f'{keys!r}: {script}')
            self.assertTrue(self.js(FOCUS), f'{keys!r}: focus on {self.js("return document.activeElement.outerHTML")}')

    def test_keyboard(self):
        tables = {
            'search': ('#all', [
                ('/', 'return document.activeElement.id', 'text'),
                ('event_po', HASH, '#search=event_po'),
                ('s', HASH, '#search=event_pos'),
                (Keys.ARROW_DOWN, ACTIVE, 'event_post()'),
                (Keys.ARROW_UP, 'return document.activeElement.id', 'text'),
                (Keys.ENTER, HASH, '#symbol=event_post'),
                ('', TITLE, 'event_post()'),
                ('/', 'return document.activeElement.id', 'text'),
                ('panic', TITLE, 'Search: panic'),
                (Keys.ESCAPE, TITLE, 'event_post()'),
            ]),
            'list': ('#symbols', [
                ('to .row a', ACTIVE, 'behave_chase()'),
                (Keys.ARROW_DOWN, ACTIVE, 'behave_flee()'),
                (Keys.END, ACTIVE, 'trigger_place()'),
                (Keys.ENTER, TITLE, 'trigger_place()'),
                ('back', TITLE, 'Symbols'),
                ('', ACTIVE, 'trigger_place()'),
                ('', 'return document.querySelector(".scroller").scrollTop > 0', True),
                ('forward', TITLE, 'trigger_place()'),
            ]),
            'tree': ('#symbol=event_post', [
                ('to [role=treeitem]', ROW, 'events.o'),
                (Keys.ARROW_DOWN, ROW, 'panic.o'),
                (Keys.ARROW_DOWN, ROW, 'platform.o'),
                (Keys.ARROW_LEFT, ROW, 'panic.o'),
                ('-', EXPANDED, 'false'),
                (Keys.ARROW_DOWN, ROW, 'panic.o'),
                ('+', EXPANDED, 'true'),
                (Keys.ARROW_RIGHT, ROW, 'platform.o'),
                (Keys.END, ROW, 'text.o'),
                ('', SELECTED, 'text.o'),
                (Keys.HOME + Keys.ARROW_DOWN, SELECTED, 'panic.o'),
                (Keys.ENTER, HASH, '#object=panic.o&library=engine'),
                ('back', TITLE, 'event_post()'),
            ]),
            'icicle': ('#symbol=event_post', [
                ('to .links .cells', LINE, 'events.o in engine'),
                (Keys.ARROW_DOWN, LINE, 'panic.o in engine'),
                (Keys.ENTER, 'return document.querySelector(".cell-outer").getAttribute("aria-label")', '‹ events.o'),
                ('', 'return document.querySelector("[aria-selected=true] .name > a").textContent', 'panic.o'),
                (Keys.ESCAPE, 'return document.querySelector(".cell-outer")', None),
            ]),
            'treemap': ('#all', [
                ('to .cells', LINE, 'heap.o in engine'),
                (Keys.ARROW_RIGHT, LINE, 'events.o in engine'),
                (Keys.ENTER, TITLE, 'events.o'),
            ]),
            'table': ('#all', [
                ('to [aria-label=Objects] th:first-child', ACTIVE, 'Object'),
                (Keys.ENTER, SORT, 'ascending'),
                (Keys.ENTER, SORT, 'descending'),
                (Keys.ENTER, SORT, 'ascending'),
                ('to [aria-label=Objects] tbody', ACTIVE, 'behave.o'),
                (Keys.ARROW_DOWN, ACTIVE, 'brain.o'),
                (Keys.ARROW_RIGHT, ACTIVE, 'engine'),
                (Keys.HOME + Keys.ENTER, TITLE, 'brain.o'),
            ]),
            'why': ('#why', [
                ('to .suggest input', ACTIVE, ''),
                ('event_p' + Keys.ARROW_DOWN + Keys.ENTER, FROM, 'event_post'),
                ('heap.o' + Keys.ENTER, HASH, '#why=event_post,heap.o'),
                ('', CHAIN, ['events.o', 'panic.o', 'heap.o']),
            ]),
            'suggestions': ('#why', [
                ('to .suggest input', ACTIVE, ''),
                ('e' + Keys.TAB, 'return document.activeElement.labels[0].textContent', 'why is this linked in?'),
                ('', FROM, 'e'),
            ]),
            'frame': ('#all', [
                ('to #skip', ACTIVE, 'Skip to the content'),
                (Keys.ENTER, 'return document.activeElement.id', 'main'),
                ('/', 'return document.activeElement.id', 'text'),
                ('to #theme', 'return document.documentElement.dataset.theme', None),
                ('d', 'return document.documentElement.dataset.theme', 'dark'),
                ('to a[href="#objects"]', 'return getComputedStyle(document.body).colorScheme', 'dark'),
                (Keys.ENTER, TITLE, 'Objects'),
            ]),
        }
        for name, (address, steps) in tables.items():
            with self.subTest(name):
                self.open(self.page, address)
                self.steps(steps)

    def read(self, name):
        return pathlib.Path(self.directory, name).read_text('latin-1')

    def write(self, name, text):
        pathlib.Path(self.directory, name).write_text(text, 'latin-1')
        return name

    def makehostile(self):
        """Writes a store in which each name is that of a symbol, an object, a library and a source."""
        names = [name.encode().decode('latin-1') for name in HOSTILE] + ['\xff\xfe']
        refers = ''.join(f'refer={name}\n' for name in names)
        return self.write('hostile.tvk', ''.join(
            f'[{name}][{name}]\nsource={name},20251024\ndefine={name},FUNCTION,GLOBAL,4\n{refers}size={i}\n\n'
            for i, name in enumerate(names, 1)))

    def test_hostile_names(self):
        options = ['--under', '--title', '</title><script>window.ran = 1</script>']
        store = self.makehostile()
        page = makepage(self.directory, 'hostile.html', *options, '--source-prefix', 'https://example.org/',
                        '--compare', store, store)
        names = json.loads(run(self.directory, 'tolvik-page', '--json', *options, store).encode('latin-1'))['symbols']
        self.assertEqual({*HOSTILE, 'ÿþ'}, set(names))
        self.open(page)
        encoded = [quote(name, safe='') for name in names]
        expected = dict.fromkeys(['#all', '#symbols', '#objects', '#libraries'], names)
        for name, code, other in zip(names, encoded, encoded[1:] + encoded[:1]):
            expected.update({f'#search={code}': [name], f'#compare={code}': [name], f'#why={code},{other}': [name]})
        known, links = set(), {}
        following = [*expected, '#compare', '#__proto__=A', '#constructor=A']
        while following:
            known.update(following)
            for address, view in zip(following, self.go(following, VIEW, 2)):
                self.assertEqual([[], None], [view['foreign'], view['ran']], address)
                self.assertEqual([], [name for name in expected.get(address, []) if name not in view['text']], address)
                title = view['title']
                self.assertLessEqual(set(links.get(address, [])), {title, title.removesuffix('()')}, address)
                for text, target in view['links']:
                    if not target.startswith('#'):
                        self.assertRegex(target, '^https://example[.]org/[^:]*$')
                    elif re.match('#(symbol|object|library)=', target) and not text.startswith('Why is '):
                        links.setdefault(target, []).append(text)
            following = [target for target in links if target not in known]
        self.assertEqual(3 * len(names), len(links))
        self.assertEqual(options[-1], self.js('return document.title').partition(' – ')[2])

    def test_long_table(self):
        """The last row can be reached although browsers cut elements of that height."""
        self.write('long.tvk', '[a.o]\n' + ''.join(f'refer={i}\n' for i in range(1200000)))
        self.open(makepage(self.directory, 'long.html', 'long.tvk'))
        self.js('document.querySelector("[aria-label=\'Undefined symbols\']").parentNode.scrollTop = 1e9')
        self.until('return document.querySelector("[aria-rowindex=\'1200001\']") !== null')

    def test_foreign_source_prefix(self):
        """The page itself makes links only to files and to pages."""
        self.makehostile()
        prefix = 'https://example.org/'
        html = run(self.directory, 'tolvik-page', '--source-prefix', prefix, 'hostile.tvk')
        for foreign, links in [('file:///src/', 1), (' javascript:window.ran=1//', 0), ('data:text/html,', 0)]:
            with self.subTest(foreign):
                path = pathlib.Path(self.directory, self.write('prefix.html', html.replace(prefix, foreign)))
                self.open(path.as_uri(), '#object=constructor')
                self.assertEqual(links, len(self.browser.find_elements('css selector', f'dd a[href^="{foreign}"]')))
                self.assertEqual(links + 1, len(self.browser.find_elements('css selector', 'dd a')))

    def test_policy(self):
        """The page's own script runs, nothing else; nothing is loaded."""
        self.write('event.html', run(self.directory, 'tolvik', '-nologo', '-html', '-v2', '-sevent_post', self.example))
        for name, *options in [('example.html', self.example), ('reports.html', '--fragment', 'event.html')]:
            with self.subTest(name):
                self.open(makepage(self.directory, name, *options))
                script = re.findall('<script>(.*?)</script>', self.read(name), re.DOTALL)
                style = re.findall('<style>(.*?)</style>', self.read(name), re.DOTALL)
                hashes = [base64.b64encode(hashlib.sha256(text.encode('latin-1')).digest()).decode()
                          for text in script + style]
                self.assertEqual(POLICY.format(*hashes),
                                 self.js('return document.querySelector("[http-equiv]").content'))
                for attempt in ATTEMPTS:
                    violated = self.browser.execute_async_script("""
                        const [attempt, done] = arguments;
                        document.addEventListener('securitypolicyviolation', () => done(true), {once: true});
                        const add = (tag, attributes) =>
                            document.body.append(Object.assign(document.createElement(tag), attributes));
                        setTimeout(done, 5000, false);
                        eval(attempt);""", attempt)
                    self.assertTrue(violated, attempt)
                    self.assertIsNone(self.js('return window.ran'), attempt)
        messages = [entry['message'] for entry in self.browser.get_log('browser')]
        self.assertEqual([], [message for message in messages if 'Content Security Policy' not in message])

    def test_accessibility(self):
        """axe-core finds nothing in any view, light and dark, wide and at 400 %; nothing is cut there."""
        run(self.directory, 'tolvik', '-nologo', '-html', '-v2', self.example + '=reports.htm')
        pages = {
            makepage(self.directory, 'compare.html', '--compare', self.changed(), self.example): [
                '#all', '#symbols', '#objects', '#libraries', '#symbol=event_post', '#object=events.o',
                '#library=engine', '#symbol=none', '#search=panic', '#search=none.', '#why', '#why=event_post,heap.o',
                '#why=event_post,evnt', '#none', '#compare', '#compare=event_post'],
            makepage(self.directory, 'reports.html', '--fragment', 'reports.htm'): ['#report-0'],
        }
        self.addCleanup(setscreen, self.browser, 'light', 1280)
        for scheme in ['light', 'dark']:
            for width in [1280, 320]:
                setscreen(self.browser, scheme, width)
                for page, views in pages.items():
                    self.open(page)
                    self.js(AXE.read_text())
                    self.assertEqual(scheme == 'light', self.js(INK) < 128)
                    for view in views:
                        with self.subTest(f'{scheme} {width} {view}'):
                            self.go([view], '', 3)
                            self.assertEqual([], self.violations())
                            self.assertLessEqual(self.js('return document.documentElement.scrollWidth'), width)
                            self.assertTrue(self.js(WHOLE))

    def violations(self):
        return self.browser.execute_async_script("""
            const done = arguments[0];
            axe.run().then(({violations}) => done(violations.flatMap(({id, nodes}) =>
                nodes.map(({html, failureSummary}) => [id, html, failureSummary]))));""")

    def changed(self):
        """Writes an older build, which has zone.o, lacks text.o, and whose panic.o is smaller."""
        records = re.split('(?=^\\[)', self.read(self.example), flags=re.MULTILINE)
        old = [re.sub('size=.*', 'size=100', record) if record.startswith('[panic.o]') else record
               for record in records if not record.startswith('[text.o]')]
        return self.write('old.tvk', ''.join(old) + '[zone.o][engine]\ndefine=zone,FUNCTION,GLOBAL,4\nsize=4\n')

    def test_compare(self):
        self.open(makepage(self.directory, 'compare.html', '--compare', self.changed(), self.example))
        self.assertEqual('Changes from old.tvk to libengine.tvk', self.js(TITLE))
        rows = """return [...document.querySelectorAll(`[aria-label="${arguments[0]}"] tbody tr`)].map(
                      row => [...row.cells].map(cell => cell.textContent)).filter(row => row.length > 1);"""
        self.go(['#compare'], '', 3)
        self.assertEqual([['text.o', 'engine', 'added', '', '200', '+200'],
                          ['panic.o', 'engine', 'grew', '100', '138', '+38'],
                          ['zone.o', 'engine', 'removed', '4', '', '−4']], self.js(rows, 'Objects'))
        self.assertEqual([['engine', *self.totals()]], self.js(rows, 'Libraries'))
        self.go(['#compare=event_post'], '', 3)
        self.assertEqual([['Bytes', '263,856', '264,094', '+238'], ['Objects', '6', '7', '+1']],
                         self.js(rows, 'Totals of event_post'))
        self.assertEqual([['text.o', 'engine', 'added', '', '200', '+200'],
                          ['panic.o', 'engine', 'grew', '100', '138', '+38']],
                         self.js(rows, 'Objects that event_post links in'))
        self.open(makepage(self.directory, 'reverse.html', '--compare', self.example, 'old.tvk'), '#compare=event_post')
        self.until('return document.querySelector("[aria-label=Symbols] a")')
        lost = ['text_length', 'text_number', 'text_equal', 'text_copy']
        self.assertEqual([*lost, *lost[:2]],
                         self.js('return [...document.querySelectorAll("p a")].map(link => link.textContent)'))
        self.assertEqual([*([name, 'removed', 'text.o', '1'] for name in lost), ['zone()', 'added', 'zone.o', '0']],
                         self.js(rows, 'Symbols'))

    def totals(self):
        sizes = [sum(map(int, re.findall('size=(.*)', self.read(name)))) for name in ('old.tvk', self.example)]
        return [f'{size:,}' for size in sizes] + [f'+{sizes[1] - sizes[0]:,}']

    def test_reports(self):
        """The reports of -html are readable and their links work; names in them are text."""
        store = self.write('source.tvk', f'[a.o][x]\nsource=src/a.c,20251024\ndefine=a,FUNCTION,GLOBAL,4\n'
                           f'refer={HOSTILE[0]}\nsize=4\n\n[b.o][y]\ndefine={HOSTILE[0]},FUNCTION,GLOBAL\nsize=8\n')
        run(self.directory, 'tolvik', '-nologo', '-html', '-v2', store + '=source.htm')
        run(self.directory, 'tolvik', '-nologo', '-html', '-v2', '-sa', store + '=symbol.htm')
        pathlib.Path(self.directory, 'x/src').mkdir(parents=True)
        source = pathlib.Path(self.directory, self.write('x/src/a.c', 'int a;'))
        self.open(makepage(self.directory, 'reports.html', '--fragment', 'source.htm', 'symbol.htm'))
        self.assertEqual(
            [['source.htm', 'source.htm'], ['b.o', 'FILE b.o (y, 8 bytes, links 8 bytes total)'],
             ['a.o', 'FILE a.o (x, 4 bytes, links 12 bytes total)'],
             ['symbol.htm', 'symbol.htm'], ['a()', 'SYMBOL a()']],
            self.js("""return [...document.querySelectorAll('nav a')].map(link => [link.textContent,
                           document.querySelector(link.hash).querySelector('h2, h3').textContent]);"""))
        self.assertIn(HOSTILE[0], self.js('return document.querySelector("main").textContent'))
        self.browser.find_element('css selector', 'main a').click()
        WebDriverWait(self.browser, 10).until(lambda browser: len(browser.window_handles) == 2)
        first, second = self.browser.window_handles
        self.browser.switch_to.window(second)
        self.until('return location.href === arguments[0]', source.as_uri())
        self.browser.close()
        self.browser.switch_to.window(first)


if __name__ == '__main__':
    unittest.main()
