// Elements and texts. Names come from foreign objects: they reach the document only as text nodes and
// harmless attributes.

// Returns a new element. `attributes`: a function is a listener, null, undefined and false are left
// out, true is an empty value. `children`: elements, strings, numbers, arrays of these; null and
// undefined are left out.
export function element(tag, attributes = {}, ...children) {
    const made = document.createElement(tag);
    for (const [name, value] of Object.entries(attributes)) {
        if (typeof value === 'function')
            made.addEventListener(name, value);
        else if (value === true)
            made.setAttribute(name, '');
        else if (value !== false && value !== null && value !== undefined)
            made.setAttribute(name, value);
    }
    append(made, children);
    return made;
}

function append(parent, children) {
    for (const child of children) {
        if (Array.isArray(child))
            append(parent, child);
        else if (child !== null && child !== undefined)
            parent.append(typeof child === 'number' ? String(child) : child);
    }
}

// Like element(), for SVG.
export function svg(tag, attributes = {}, ...children) {
    const made = document.createElementNS('http://www.w3.org/2000/svg', tag);
    for (const [name, value] of Object.entries(attributes)) {
        if (typeof value === 'function')
            made.addEventListener(name, value);
        else if (value !== null && value !== undefined)
            made.setAttribute(name, value);
    }
    append(made, children);
    return made;
}

const numbers = new Intl.NumberFormat('en');

// "264,124"
export function number(value) {
    return numbers.format(value);
}

// "264,124 bytes"
export function bytes(value) {
    return `${number(value)} ${value === 1 ? 'byte' : 'bytes'}`;
}

// "258 KiB"; empty below 1 KiB.
export function rounded(value) {
    const units = ['KiB', 'MiB', 'GiB', 'TiB'];
    let unit = -1;
    let rest = value;
    while (rest >= 1024 && unit < units.length - 1) {
        rest /= 1024;
        ++unit;
    }
    if (unit < 0)
        return '';
    return `${rest < 10 ? rest.toFixed(1) : number(Math.round(rest))} ${units[unit]}`;
}

// "264,124 bytes (258 KiB)"
export function bytesinwords(value) {
    const short = rounded(value);
    return short === '' ? bytes(value) : `${bytes(value)} (${short})`;
}

// "1 object", "2 objects"
export function counted(value, one, many = `${one}s`) {
    return `${number(value)} ${value === 1 ? one : many}`;
}

const PRINTED = 10000; // rows of a list on paper
const MAXHEIGHT = 8e6; // browsers cut elements that are higher than some 16 million pixels

const printers = new WeakMap(); // scrolling element -> function that draws its rows

function drawlists(isprint) {
    for (const frame of document.querySelectorAll('.scroller'))
        printers.get(frame)(isprint);
}

// Not at the time of import: the functions of texts run outside browsers too.
export function watchprint() {
    window.addEventListener('beforeprint', () => drawlists(true));
    window.addEventListener('afterprint', () => drawlists(false));
}

// Makes a list of any length that has only the rows on the screen in the document, and the active
// one, which keeps the focus. Arrow keys, Home, End and the page keys move the active row.
// - makerow(index): returns a row's element. Its first element with tabindex, or the row itself,
//   gets the focus.
// - key(event, index): called first with each key of a row; may prevent the default.
// - rowclass: a class of the rows' height; the other attributes are the list's.
// Returns {element, update(count), show(index), focus(index), active()}. update() makes all rows
// again. show() makes a row the active one and scrolls to it.
export function virtuallist(makerow, {key = () => {}, rowclass = 'row', ...attributes} = {}) {
    const body = element('div', {role: 'list', class: 'rows', ...attributes});
    const frame = element('div', {class: 'scroller'}, body);
    const probe = element('div', {class: rowclass, 'aria-hidden': 'true'}, '\u00a0');
    let count = 0;
    let active = 0;
    let height = 0;
    let rows = new Map(); // index -> element

    // The row at the top of the window. Of very long lists a pixel is more than one.
    const scale = () => Math.max(1, count * height / MAXHEIGHT);
    const position = () => frame.scrollTop * scale() / height;

    const draw = isprint => {
        if (height === 0 || !frame.isConnected)
            return;
        const first = isprint === true ? 0 : Math.max(0, Math.floor(position()) - 4);
        const last = isprint === true ? Math.min(count, PRINTED)
            : Math.min(count, Math.ceil(position() + frame.clientHeight / height) + 4);
        const wanted = new Map();
        const place = index => {
            const row = rows.get(index) ?? makerow(index);
            row.style.top = `${frame.scrollTop + (index - position()) * height}px`;
            tabbable(row, index === active);
            wanted.set(index, row);
        };
        if (active < first && active < count)
            place(active);
        for (let index = first; index < last; ++index)
            place(index);
        if (active >= last && active < count)
            place(active);
        for (const [index, row] of rows) {
            if (!wanted.has(index))
                row.remove();
        }
        let before = null;
        for (const row of [...wanted.values()].reverse()) {
            if (row.parentNode !== body || row.nextSibling !== before)
                body.insertBefore(row, before);
            before = row;
        }
        rows = wanted;
    };

    const measure = () => {
        frame.append(probe);
        height = probe.getBoundingClientRect().height;
        probe.remove();
        body.style.height = `${Math.min(count * height, MAXHEIGHT)}px`;
        draw();
    };

    const update = newCount => {
        count = newCount;
        active = Math.max(0, Math.min(active, count - 1));
        for (const row of rows.values())
            row.remove();
        rows = new Map();
        if (frame.isConnected)
            measure();
    };

    const show = index => {
        active = Math.max(0, Math.min(index, count - 1));
        const top = active * height / scale();
        if (top < frame.scrollTop)
            frame.scrollTop = top;
        else if (top + height > frame.scrollTop + frame.clientHeight)
            frame.scrollTop = top + height - frame.clientHeight;
        draw();
    };

    const focus = (index = active) => {
        show(index);
        const row = rows.get(active);
        (row?.matches('[tabindex]') ? row : row?.querySelector('[tabindex]'))?.focus({preventScroll: true});
    };

    frame.addEventListener('scroll', draw, {passive: true});
    frame.addEventListener('focusin', event => {
        for (const [index, row] of rows) {
            if (row.contains(event.target) && index !== active) {
                active = index;
                draw();
            }
        }
    });
    frame.addEventListener('keydown', event => {
        if (event.altKey || event.ctrlKey || event.metaKey)
            return;
        key(event, active);
        if (event.defaultPrevented)
            return;
        const page = Math.max(1, Math.floor(frame.clientHeight / height) - 1);
        const steps = {ArrowDown: 1, ArrowUp: -1, PageDown: page, PageUp: -page, Home: -count, End: count};
        if (event.key in steps) {
            focus(active + steps[event.key]);
            event.preventDefault();
        }
    });
    new ResizeObserver(measure).observe(frame);
    printers.set(frame, draw);
    return {element: frame, update, show, focus, active: () => active};
}

// Lets the Tab key reach a row's focusable elements, or none of them.
function tabbable(row, on) {
    const value = on ? '0' : '-1';
    for (const part of [row, ...row.querySelectorAll('[tabindex]')]) {
        if (part.hasAttribute('tabindex'))
            part.setAttribute('tabindex', value);
    }
}
