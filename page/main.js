// The page: addresses, search field, colours.
import {decode, findthing, parseaddress, searchaddress} from './address.js';
import {compare} from './compare.js';
import {makegraph} from './data.js';
import {element, number} from './dom.js';
import {objectsview, overview} from './overview.js';
import {makeindex} from './search.js';
import {unknownname} from './suggest.js';
import {librariesview, libraryview, objectview, searchview, symbolsview, symbolview} from './views.js';
import {watchprint} from './virtual.js';
import {why} from './why.js';

const main = document.getElementById('main');
const field = document.getElementById('text');
const status = document.getElementById('status');
const graph = makegraph(readdata('data'));
const old = document.getElementById('old') === null ? null : makegraph(readdata('old'));
let results = null; // the search view when it is shown
let reportOpen = false;
let current = null; // the view on the screen: {address, view, parts, top, lists, focus}
const KEPT = 10;
const kept = new Map(); // address -> view that was on the screen

function readdata(id) {
    return JSON.parse(document.getElementById(id).textContent);
}

// Without a prototype: an address may have any word as its kind.
const things = {__proto__: null, symbol: symbolview, object: objectview, library: libraryview};
const lists = {__proto__: null, symbols: symbolsview, objects: objectsview, libraries: librariesview};

function makeview(address) {
    const {kind, name = ''} = address;
    if (Object.hasOwn(things, kind) && name !== '') {
        const thing = findthing(graph, address);
        return thing < 0 ? missing(kind, name) : things[kind](graph, thing);
    }
    if (Object.hasOwn(lists, kind))
        return lists[kind](graph);
    if (kind === 'search')
        return searchview(graph, name, resultkey);
    if (kind === 'why')
        return why(graph, ...questionnames());
    if (kind === 'compare' && old !== null)
        return compare(graph, old);
    if (kind === '' || kind === 'all')
        return overview(graph);
    return {
        title: 'Unknown address',
        element: element('p', {}, `The page has no view ${location.hash}. `, element('a', {href: '#all'}, 'Overview')),
    };
}

// The two names may hold commas of their own, which are encoded.
function questionnames() {
    const [from = '', to = ''] = location.hash.replace(/^#why=?/, '').split(',');
    return [decode(from), decode(to)];
}

function missing(kind, name) {
    return {title: name, element: unknownname(graph, name, kind === 'library' ? [kind] : undefined)};
}

// Shows the view of the address, as the reader left it when it is kept. The focus moves to its heading
// unless the reader is typing.
function show(first, left) {
    keepview();
    const address = parseaddress(location.hash || (old === null ? '#all' : '#compare'));
    const view = left?.view ?? makeview(address);
    results = address.kind === 'search' ? view : null;
    const parts = left?.parts ?? [
        element('div', {class: 'heading'},
            element('h1', {tabindex: -1, class: view.kind === undefined ? null : 'name'}, view.title),
            view.kind === undefined ? null : element('span', {class: 'kind'}, view.kind)),
        view.element, ...(view.report === undefined ? [] : [reporttext(view)]),
    ];
    main.replaceChildren(...parts);
    current = left ?? {address: location.hash, view, parts, top: 0, lists: [], focus: null};
    document.title = `${view.title} – ${graph.title}`;
    status.textContent = view.summary ?? '';
    marknavigation(address.kind);
    if (results === null)
        field.value = '';
    else if (field.value !== address.name)
        field.value = address.name ?? '';
    if (first)
        return;
    restorescroll(current);
    const focus = current.focus?.isConnected ? current.focus : main.querySelector('h1');
    if (document.activeElement !== field)
        focus.focus({preventScroll: true});
}

// --- history

// Keeps the current view for the Back and Forward buttons.
function keepview() {
    if (current === null)
        return;
    current.top = window.scrollY;
    current.lists = [...main.querySelectorAll('.scroller, .table-view')].map(list => [list, list.scrollTop]);
    if (main.contains(document.activeElement))
        current.focus = document.activeElement;
    kept.delete(current.address);
    kept.set(current.address, current);
    if (kept.size > KEPT)
        kept.delete(kept.keys().next().value);
}

// Scrolls after the lists have measured their rows: observers are called in the order of their making.
function restorescroll({top, lists}) {
    const observer = new ResizeObserver(() => {
        observer.disconnect();
        for (const [list, scrolled] of lists)
            list.scrollTop = scrolled;
        window.scrollTo(0, top);
    });
    observer.observe(main);
}

// A new entry of the history has no state.
function changeaddress() {
    const left = history.state === null ? undefined : kept.get(location.hash);
    if (history.state === null)
        history.replaceState({}, '');
    show(false, left);
}

// The text of the program's report, made when it is opened.
function reporttext(view) {
    const text = element('textarea', {readonly: true, rows: 12, spellcheck: 'false', 'aria-label': 'Report as text'});
    const fill = () => {
        if (text.value === '')
            text.value = view.report();
    };
    const copied = element('span', {id: 'copied', role: 'status'});
    const copy = () => {
        fill();
        details.open = true;
        text.focus();
        text.setSelectionRange(1, text.value.length); // without the empty line above the report
        copied.textContent = document.execCommand('copy') ? 'Copied.' : 'Press the copy key of your system.';
    };
    const details = element('details', {class: 'report', open: reportOpen, toggle: () => {
        reportOpen = details.open;
        if (details.open)
            fill();
    }}, element('summary', {}, 'Report as text'), text);
    if (reportOpen)
        fill();
    return element('div', {},
        element('button', {type: 'button', id: 'copy', click: copy}, 'Copy as text'), ' ', copied, details);
}

// --- navigation

function fillnavigation() {
    const entries = [
        ['all', 'Overview'], ['symbols', 'Symbols', graph.symbols.length], ['objects', 'Objects', graph.objects.length],
        ...(graph.libraries.length === 0 ? [] : [['libraries', 'Libraries', graph.libraries.length]]),
        ['why', 'Why…'],
        ...(old === null ? [] : [['compare', 'Compare…']]),
    ];
    document.getElementById('views').replaceChildren(...entries.map(([kind, text, count]) =>
        element('li', {}, element('a', {href: `#${kind}`}, text,
            count === undefined ? null : element('span', {class: 'count'}, ` ${number(count)}`)))));
    document.getElementById('title').textContent = graph.title;
    if (graph.part !== undefined) {
        document.getElementById('title').after(element('span', {class: 'part'},
            `part: ${number(graph.objects.length)} of ${number(graph.part.objects)} objects`));
    }
}

function marknavigation(kind) {
    const current = `#${kind === '' ? 'all' : kind}`;
    for (const entry of document.querySelectorAll('#views a')) {
        if (entry.getAttribute('href') === current)
            entry.setAttribute('aria-current', 'page');
        else
            entry.removeAttribute('aria-current');
    }
}

// --- search

// The first letter makes an entry of the history, the following ones change it.
function type() {
    if (field.value === '')
        return leaveresults();
    if (results === null) {
        history.pushState({searching: true}, '', searchaddress(field.value));
    } else {
        history.replaceState(history.state, '', searchaddress(field.value));
        current = null; // no entry of the history any more
    }
    show(false);
}

// Goes back to the view before the results.
function leaveresults() {
    if (results !== null && history.state?.searching)
        history.back();
    else if (results !== null)
        location.hash = '#all';
}

function leavesearch() {
    leaveresults();
    field.blur();
}

function resultkey(event, row) {
    if (event.key === 'ArrowUp' && row === 0)
        field.focus();
    else if (event.key === 'Escape')
        leavesearch();
    else
        return;
    event.preventDefault();
}

field.addEventListener('input', type);
field.addEventListener('keydown', event => {
    if (event.key === 'Escape')
        leavesearch();
    else if (event.key === 'ArrowDown' && results !== null && results.first !== null)
        results.focus();
    else
        return;
    event.preventDefault();
});
document.getElementById('search').addEventListener('submit', event => {
    event.preventDefault();
    if (results === null || results.first === null)
        return;
    field.blur();
    location.hash = results.first;
});
document.addEventListener('keydown', event => {
    const isText = event.target.closest('input, textarea, select') !== null;
    if (event.key !== '/' || isText || event.altKey || event.ctrlKey || event.metaKey)
        return;
    event.preventDefault();
    field.focus();
    field.select();
});
document.getElementById('skip').addEventListener('click', () => main.focus());

// --- colours

// Forces light or dark; without a value the reader's setting holds.
function settheme() {
    if (chooser.value === '')
        delete document.documentElement.dataset.theme;
    else
        document.documentElement.dataset.theme = chooser.value;
}

// Pages from disk may have no storage.
function stored(action) {
    try {
        return action(sessionStorage);
    } catch {
        return null;
    }
}

const chooser = document.querySelector('#theme select');
chooser.value = stored(storage => storage.getItem('theme')) ?? '';
chooser.addEventListener('change', () => {
    stored(storage => storage.setItem('theme', chooser.value));
    settheme();
});

watchprint();
settheme();
fillnavigation();
// The browser itself scrolls only when it loads the page again.
for (const [event, restoration] of [['pageshow', 'manual'], ['pagehide', 'auto']]) {
    window.addEventListener(event, () => {
        history.scrollRestoration = restoration;
    });
}
window.addEventListener('hashchange', changeaddress);
history.replaceState(history.state ?? {}, '');
show(true);
// After the first painting, so that the first letter does not wait for it.
setTimeout(() => makeindex(graph));
