"""A headless Chromium without a network, and the programs that make its pages."""
import json
import os
import pathlib
import shutil
import subprocess
import tempfile
import unittest

from selenium import webdriver
from selenium.webdriver.chrome.service import Service
from selenium.webdriver.support.wait import WebDriverWait

TOP = pathlib.Path(__file__).resolve().parents[2]
BUILD = pathlib.Path(os.environ.get('TOLVIK_BUILD', TOP / 'build/release')).resolve()


def run(directory, *command):
    """Runs a program of the build in the directory; returns its output, in which a byte is a character."""
    path = f'{BUILD}:{BUILD}/toolchains:{BUILD}/bench:{os.environ["PATH"]}'
    environment = {**os.environ, 'PATH': path, 'EXAMPLE_TOOLS': str(BUILD / 'examples')}
    environment.pop('TOLVIK_OPTS', None)
    program = shutil.which(command[0], path=path)
    done = subprocess.run([program, *command[1:]], cwd=directory, env=environment, check=False,
                          stdin=subprocess.DEVNULL, capture_output=True)
    if done.returncode != 0:
        raise RuntimeError(f'{command}: {done.stderr.decode("latin-1")}')
    return done.stdout.decode('latin-1')


def makelibrary(directory, library, *options):
    """Imports a library in the directory; returns the name of the symbol file."""
    path = pathlib.Path(shutil.copy(library, directory))
    run(directory, 'tolvik', '-nologo', '-v1', '-telf', *options, f'{path.name}={path.stem}.tvk')
    return f'{path.stem}.tvk'


def makeexample(directory):
    """Compiles and imports the example library; returns the name of the symbol file."""
    run(directory, f'{TOP}/script/example-library', f'{directory}/example')
    return makelibrary(directory, f'{directory}/example/libengine.a', '-libengine')


def makepage(directory, name, *options):
    """Writes a page of tolvik-page; returns its address."""
    path = pathlib.Path(directory, name)
    path.write_text(run(directory, 'tolvik-page', *options), 'latin-1')
    return path.as_uri()


def start(profile):
    """Returns a browser that resolves no host name."""
    options = webdriver.ChromeOptions()
    options.binary_location = shutil.which('chromium')
    for argument in ['headless=new', 'host-resolver-rules=MAP * ~NOTFOUND', f'user-data-dir={profile}',
                     'disable-background-networking', 'disable-ipc-flooding-protection',
                     'hide-scrollbars']:
        options.add_argument(f'--{argument}')
    if os.geteuid() == 0:
        options.add_argument('--no-sandbox')
    options.set_capability('goog:loggingPrefs', {'browser': 'ALL', 'performance': 'ALL'})
    browser = webdriver.Chrome(service=Service(shutil.which('chromedriver')), options=options)
    browser.set_script_timeout(120)
    return browser


def setscreen(browser, scheme, width):
    """Sets the reader's colours, "light" or "dark", and the width of the window."""
    browser.execute_cdp_cmd('Emulation.setEmulatedMedia', {
        'features': [{'name': 'prefers-color-scheme', 'value': scheme}]})
    browser.execute_cdp_cmd('Emulation.setDeviceMetricsOverride', {
        'width': width, 'height': 800, 'deviceScaleFactor': 1, 'mobile': False})


class PageTest(unittest.TestCase):
    """Tests in one browser. Each fails when the page writes to the console or loads another file."""

    @classmethod
    def setUpClass(cls):
        cls.directory = tempfile.mkdtemp(prefix='tolvik-page.')
        cls.addClassCleanup(shutil.rmtree, cls.directory, ignore_errors=True)
        cls.browser = start(f'{cls.directory}/profile')
        cls.addClassCleanup(cls.browser.quit)
        setscreen(cls.browser, 'light', 1280)

    def setUp(self):
        self.browser.get('about:blank')
        self.browser.get_log('browser')
        self.browser.get_log('performance')
        self.allowed = set()

    def tearDown(self):
        self.assertEqual([], [entry['message'] for entry in self.browser.get_log('browser')])
        messages = [json.loads(entry['message'])['message'] for entry in self.browser.get_log('performance')]
        sent = {message['params']['requestId']: message['params']['request']['url'] for message in messages
                if message['method'] == 'Network.requestWillBeSent'}
        for message in messages:
            if message['params'].get('blockedReason') == 'csp':
                sent.pop(message['params']['requestId'], None)
        self.assertEqual(set(), set(sent.values()) - self.allowed)

    def open(self, page, address=''):
        """Opens the page, anew if another address of it is shown."""
        self.browser.get('about:blank')
        self.allowed.add(page)
        self.browser.get(page + address)

    def js(self, script, *arguments):
        return self.browser.execute_script(script, *arguments)

    def until(self, script, *arguments):
        """Waits until the script returns a true value; returns it."""
        return WebDriverWait(self.browser, 20, 0.02).until(lambda _: self.js(script, *arguments), script)

    def go(self, addresses, script, frames=0):
        """Goes to each address and returns what the script returns there after some frames."""
        return self.browser.execute_async_script('''
            const [addresses, script, frames, done] = arguments;
            const read = new Function(script);
            (async () => {
                const results = [];
                for (const address of addresses) {
                    if (location.hash !== address) {
                        const shown = new Promise(resume => addEventListener('hashchange', resume, {once: true}));
                        location.hash = address;
                        await shown;
                    }
                    for (let i = 0; i < frames; ++i)
                        await new Promise(requestAnimationFrame);
                    results.push(read());
                }
                done(results);
            })();''', addresses, script, frames)
