// Lists of any length. Only the rows on the screen are in the document, and the active row, which
// keeps the focus.
import {element} from './dom.js';

const MARGIN = 4;      // rows above and below the screen
const PRINTED = 10000; // rows of a list on paper
export const MAXHEIGHT = 8e6; // browsers cut elements that are higher than some 16 million pixels

const states = new WeakMap(); // scrolling element -> state

// Makes a list in which arrow keys, Home, End and the page keys move the active row.
// - makerow(index): returns a row's element. The row, or its first element with tabindex, gets the
//   focus.
// - key(event, index): called first with each key of a row; may prevent the default.
// - rowclass: a class of the rows' height; head: an element that stays above the rows.
// - The other attributes are the list's.
// Returns {element, update(count), show(index), focus(index)}. update() makes all rows
// again. show() makes a row the active one and scrolls to it.
export function virtuallist(makerow, {key = () => {}, rowclass = 'row', head = null, ...attributes} = {}) {
    const body = element('div', {role: 'list', class: 'rows', ...attributes});
    const frame = element('div', {class: 'scroller'}, head, body);
    const state = {
        makerow, key, rowclass, body, frame,
        rows: new Map(), // index -> element
        count: 0, active: 0,
        height: 0, // of a row; 0 before the list is in the document
    };
    states.set(frame, state);
    listen(state);
    return {
        element: frame,
        update: count => update(state, count),
        show: index => show(state, index),
        focus: index => focus(state, index),
    };
}

// Makes lists whole for print.
export function watchprint() {
    const drawall = isprint => {
        for (const frame of document.querySelectorAll('.scroller'))
            draw(states.get(frame), isprint);
    };
    window.addEventListener('beforeprint', () => drawall(true));
    window.addEventListener('afterprint', () => drawall(false));
}

function listen(state) {
    const {frame} = state;
    frame.addEventListener('scroll', () => draw(state), {passive: true});
    frame.addEventListener('focusin', event => {
        for (const [index, row] of state.rows) {
            if (row.contains(event.target) && index !== state.active) {
                state.active = index;
                draw(state);
            }
        }
    });
    frame.addEventListener('keydown', event => {
        if (event.altKey || event.ctrlKey || event.metaKey)
            return;
        state.key(event, state.active);
        if (!event.defaultPrevented && presskey(state, event.key))
            event.preventDefault();
    });
    new ResizeObserver(() => measure(state)).observe(frame);
}

function presskey(state, key) {
    const {count, height} = state;
    const page = Math.max(1, Math.floor(windowheight(state) / height) - 1);
    const steps = {ArrowDown: 1, ArrowUp: -1, PageDown: page, PageUp: -page, Home: -count, End: count};
    if (!(key in steps))
        return false;
    focus(state, state.active + steps[key]);
    return true;
}

function windowheight({frame, body}) {
    return frame.clientHeight - body.offsetTop;
}

// Returns how many pixels of the rows are one pixel of the list; more than 1 for very long lists.
// `window` is the height of the visible part.
export function scaleof({count, height}, window) {
    return Math.max(1, (count * height - window) / (MAXHEIGHT - window));
}

// Returns the number of rows above the window.
function position(state) {
    return state.frame.scrollTop * scaleof(state, windowheight(state)) / state.height;
}

function measure(state) {
    const {frame, body, rowclass} = state;
    const probe = element('div', {class: rowclass, 'aria-hidden': 'true'}, '\u00a0');
    frame.append(probe);
    state.height = probe.getBoundingClientRect().height;
    probe.remove();
    body.style.height = `${Math.min(state.count * state.height, MAXHEIGHT)}px`;
    draw(state);
}

function draw(state, isprint = false) {
    const {frame, height, count, active} = state;
    if (height === 0 || !frame.isConnected)
        return;
    const above = position(state);
    const first = isprint ? 0 : Math.max(0, Math.floor(above) - MARGIN);
    const last = isprint ? Math.min(count, PRINTED)
        : Math.min(count, Math.ceil(above + windowheight(state) / height) + MARGIN);
    const wanted = Array.from({length: Math.max(0, last - first)}, (_, i) => first + i);
    if (active < first)
        wanted.unshift(active);
    else if (active >= last && active < count)
        wanted.push(active);
    placerows(state, new Map(wanted.map(index => [index, state.rows.get(index) ?? state.makerow(index)])), above);
}

// Makes these the rows in the document. Rows that are there already are not moved: they may have the
// focus.
function placerows(state, rows, above) {
    const {frame, body, height, active} = state;
    for (const [index, row] of state.rows) {
        if (!rows.has(index))
            row.remove();
    }
    let next = body.firstChild;
    for (const [index, row] of rows) {
        row.style.top = `${frame.scrollTop + (index - above) * height}px`;
        settabstop(row, index === active);
        if (row === next)
            next = next.nextSibling;
        else
            body.insertBefore(row, next);
    }
    state.rows = rows;
}

// Lets the Tab key reach a row's focusable elements, or none of them.
function settabstop(row, on) {
    for (const part of [row, ...row.querySelectorAll('[tabindex]')]) {
        if (part.hasAttribute('tabindex'))
            part.setAttribute('tabindex', on ? '0' : '-1');
    }
}

function update(state, count) {
    state.count = count;
    state.active = Math.max(0, Math.min(state.active, count - 1));
    state.body.replaceChildren();
    state.rows = new Map();
    if (state.frame.isConnected)
        measure(state);
}

function show(state, index) {
    const {frame, height, count} = state;
    state.active = Math.max(0, Math.min(index, count - 1));
    const least = (state.active + 1) * height - windowheight(state); // to show the row's end
    const most = state.active * height;
    const scrolled = position(state) * height;
    if (scrolled > most || scrolled < least)
        frame.scrollTop = (scrolled > most ? most : least) / scaleof(state, windowheight(state));
    draw(state);
}

function focus(state, index) {
    show(state, index);
    const row = state.rows.get(state.active);
    const target = row?.matches('[tabindex]') ? row : row?.querySelector('[tabindex]');
    target?.focus({preventScroll: true});
}
