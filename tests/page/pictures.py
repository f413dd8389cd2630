"""pictures.py DIRECTORY: makes pictures of a symbol of the example library, light and dark."""
import pathlib
import sys
import tempfile
import time

from browser import TOP, makeexample, makepage, run, setscreen, start


def makeparts(directory):
    """Imports the example library as one library for each folder; returns the name of the symbol file."""
    makeexample(directory)
    for folder in sorted((TOP / 'examples/engine').iterdir()):
        objects = [source.with_suffix('.o').name for source in sorted(folder.glob('*.c'))]
        run(f'{directory}/example', 'tolvik', '-nologo', '-v1', '-telf', '-append', f'-lib{folder.name}',
            f'{objects[0]}=engine.tvk', *objects[1:])
    return 'example/engine.tvk'


def main(target):
    with tempfile.TemporaryDirectory(prefix='tolvik-page.') as directory:
        page = makepage(directory, 'example.html', '--title', 'engine', makeparts(directory))
        browser = start(f'{directory}/profile')
        for scheme in ['light', 'dark']:
            setscreen(browser, scheme, 1280)
            browser.get(page + '#symbol=music_play')
            time.sleep(1)
            browser.save_screenshot(f'{target}/page-{scheme}.png')
        browser.quit()


pathlib.Path(sys.argv[1]).mkdir(exist_ok=True)
main(sys.argv[1])
