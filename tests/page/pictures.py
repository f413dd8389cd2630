"""pictures.py DIRECTORY: makes pictures of a symbol of the example library, light and dark."""
import pathlib
import sys
import tempfile
import time

from browser import makeexample, makepage, setscreen, start


def main(target):
    with tempfile.TemporaryDirectory(prefix='tolvik-page.') as directory:
        page = makepage(directory, 'example.html', '--title', 'libengine.a', makeexample(directory))
        browser = start(f'{directory}/profile')
        for scheme in ['light', 'dark']:
            setscreen(browser, scheme, 1280)
            browser.get(page + '#symbol=event_post')
            time.sleep(1)
            browser.save_screenshot(f'{target}/page-{scheme}.png')
        browser.quit()


pathlib.Path(sys.argv[1]).mkdir(exist_ok=True)
main(sys.argv[1])
