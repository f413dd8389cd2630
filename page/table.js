// Tables of any length that the reader sorts. Only the rows on the screen are in the document, and
// the row that has the focus.
import {element, number} from './dom.js';
import {MAXHEIGHT, scaleof} from './virtual.js';

const OVERSCAN = 6; // rows above and below the screen
const PRINTED = 500;
const SHORT = 30; // rows of a table that does not scroll

const states = new WeakMap(); // scrolling element -> state

// Returns {element, update()}.
// - label: the table's name for those who do not see it.
// - columns: [{title, text, value(row), cell(row)}, ...]: value is a number to sort by, a text where
//   `text` is true, undefined when unknown; cell returns an element or text to show, by default the
//   value.
// - rows: array, of which a sorted copy is shown. update() shows changed values of the rows.
// - sort, descending: the column that sorts first.
export function table({label, columns, rows, sort = 0, descending = true}) {
    // Stand for the rows above and under those in the document.
    const [above, under] = [0, 1].map(() => element('tr', {class: 'space', 'aria-hidden': 'true'}));
    const body = element('tbody', {}, above, under);
    const heads = columns.map((column, i) => element('th', {scope: 'col', class: column.text ? 'text' : 'number'},
        element('button', {type: 'button', click: () => sortby(state, i)}, column.title,
                element('span', {class: 'sort-mark', 'aria-hidden': 'true'}))));
    const grid = element('table', {role: 'grid', 'aria-label': label, 'aria-colcount': columns.length},
        element('thead', {}, element('tr', {'aria-rowindex': 1}, heads)), body);
    const texts = columns.filter(({text}) => text).length;
    grid.style.setProperty('--texts', texts);
    grid.style.setProperty('--numbers', columns.length - texts);
    const frame = element('div', {class: rows.length > SHORT ? 'table-view' : 'table-view whole', tabindex: -1}, grid);
    const more = element('p', {class: 'table-more'});
    const state = {
        columns, grid, above, under, body, frame, heads, more, sort, descending, rows,
        count: rows.length, drawn: new Map(), height: 0, row: 0, column: 0, printing: false,
    };
    listen(state);
    sortrows(state);
    return {
        element: element('div', {class: 'table'}, frame, more),
        update: () => sortrows(state),
    };
}

function listen(state) {
    const {frame} = state;
    frame.addEventListener('scroll', () => draw(state), {passive: true});
    frame.addEventListener('keydown', event => {
        if (!event.altKey && !event.metaKey && !event.target.closest('button') && presskey(state, event))
            event.preventDefault();
    });
    frame.addEventListener('focusin', event => {
        const cell = event.target.closest('tbody tr > *');
        if (cell === null)
            return;
        state.column = cell.cellIndex;
        state.row = Number(cell.parentNode.getAttribute('aria-rowindex')) - 2;
        settabstops(state);
    });
    states.set(frame, state);
    new ResizeObserver(() => draw(state)).observe(frame);
}

function sortby(state, column) {
    state.descending = state.sort === column ? !state.descending : !state.columns[column].text;
    state.sort = column;
    state.row = 0;
    state.frame.scrollTop = 0;
    sortrows(state);
}

// Unknown values come last in both directions.
function sortrows(state) {
    const {columns, rows, sort, descending, heads, grid} = state;
    const direction = descending ? -1 : 1;
    const keys = rows.map(row => columns[sort].value(row));
    const order = [...keys.keys()].sort((a, b) => {
        if (keys[a] === keys[b])
            return a - b;
        if (keys[a] === undefined || keys[b] === undefined)
            return keys[a] === undefined ? 1 : -1;
        return keys[a] < keys[b] ? -direction : direction;
    });
    state.sorted = order.map(i => rows[i]);
    heads.forEach((head, i) => {
        head.setAttribute('aria-sort', i !== sort ? 'none' : descending ? 'descending' : 'ascending');
        head.classList.toggle('sorted', i === sort);
        head.querySelector('.sort-mark').textContent = i !== sort ? '' : descending ? '\u00a0▼' : '\u00a0▲';
    });
    grid.setAttribute('aria-rowcount', rows.length + 1);
    state.drawn.clear();
    draw(state);
}

function draw(state) {
    const {frame, grid, sorted} = state;
    if (frame.clientHeight === 0 || state.printing)
        return;
    if (sorted.length <= SHORT) {
        place(state, 0, sorted.length);
        return;
    }
    if (state.height === 0) {
        place(state, 0, 1);
        state.height = state.drawn.get(0).getBoundingClientRect().height;
    }
    const height = state.height || 1;
    const {scrollTop} = frame;
    const above = scrollTop * scalefor(state) / height; // rows above the window
    const shown = Math.ceil(frame.clientHeight / height);
    const first = Math.min(Math.max(0, Math.floor(above) - OVERSCAN), sorted.length);
    const last = Math.min(sorted.length, first + shown + 2 * OVERSCAN);
    const space = scrollTop + (first - above) * height;
    const all = Math.min(sorted.length * height, MAXHEIGHT);
    place(state, first, last, space, Math.max(0, all - Math.max(0, space) - (last - first) * height));
}

function scalefor(state) {
    return scaleof(state, state.frame.clientHeight - state.heads[0].offsetHeight);
}

// Puts the rows from first to last - 1 into the document, with spaces above and under them. Rows are added before others are removed:
// a lower body would scroll.
function place(state, first, last, spaceabove = 0, spaceunder = 0) {
    const {above, body, drawn, frame, under} = state;
    const hadFocus = body.contains(document.activeElement);
    state.drawn = new Map();
    let previous = above;
    for (let i = first; i < last; ++i) {
        const row = drawn.get(i) ?? makerow(state, i);
        if (!drawn.has(i))
            previous.after(row);
        previous = row;
        state.drawn.set(i, row);
    }
    const kept = new Set(state.drawn.values());
    for (const row of [...body.children]) {
        if (row !== above && row !== under && !kept.has(row))
            row.remove();
    }
    above.style.height = `${Math.max(0, spaceabove)}px`;
    body.style.transform = spaceabove < 0 ? `translateY(${spaceabove}px)` : ''; // only in very long tables
    under.style.height = `${spaceunder}px`;
    settabstops(state);
    if (hadFocus && !body.contains(document.activeElement))
        (cellof(state) ?? frame).focus({preventScroll: true});
}

function makerow(state, i) {
    const row = state.sorted[i];
    const cells = state.columns.map((column, at) => {
        const value = column.value(row);
        const shown = column.cell?.(row) ?? (typeof value === 'number' ? number(value) : value ?? '');
        return element(at === 0 ? 'th' : 'td', {
            class: `${column.text ? 'text' : 'number'}${at === state.sort ? ' sorted' : ''}`,
            scope: at === 0 ? 'row' : null, tabindex: -1,
            title: typeof value === 'string' ? value : null,
        }, shown);
    });
    for (const link of cells.flatMap(cell => [...cell.querySelectorAll('a')])) {
        link.setAttribute('tabindex', -1);
        link.closest('th, td').removeAttribute('tabindex');
    }
    return element('tr', {'aria-rowindex': i + 2}, cells);
}

// Of a cell with a link the link has the focus.
function focusable(cell) {
    return cell.querySelector('a') ?? cell;
}

// Returns the element that the keyboard is at; undefined when its row is not in the document.
function cellof({drawn, row, column}) {
    return drawn.has(row) ? focusable(drawn.get(row).cells[column]) : undefined;
}

// The Tab key stops at one cell.
function settabstops(state) {
    for (const stop of state.body.querySelectorAll('[tabindex="0"]'))
        stop.setAttribute('tabindex', -1);
    const [first] = state.drawn.values();
    const stop = cellof(state) ?? first?.querySelector('[tabindex]');
    stop?.setAttribute('tabindex', 0);
}

// Returns whether the key means something to the table.
function presskey(state, {key, ctrlKey}) {
    const {frame, height, sorted, columns} = state;
    const page = Math.max(1, Math.floor(frame.clientHeight / height) - 2);
    const last = sorted.length - 1;
    const moves = {
        ArrowUp: [-1, 0], ArrowDown: [1, 0], ArrowLeft: [0, -1], ArrowRight: [0, 1],
        PageUp: [-page, 0], PageDown: [page, 0],
        Home: [ctrlKey ? -last : 0, -columns.length], End: [ctrlKey ? last : 0, columns.length],
    };
    if (!(key in moves) || last < 0)
        return false;
    const [down, right] = moves[key];
    focus(state, Math.max(0, Math.min(last, state.row + down)),
          Math.max(0, Math.min(columns.length - 1, state.column + right)));
    return true;
}

function focus(state, row, column) {
    const {frame, height, heads} = state;
    const top = row * height;
    const window = frame.clientHeight - heads[0].offsetHeight - height;
    const scale = scalefor(state);
    const scrolled = frame.scrollTop * scale;
    if (top < scrolled)
        frame.scrollTop = top / scale;
    else if (top > scrolled + window)
        frame.scrollTop = Math.ceil((top - window) / scale);
    state.row = row;
    state.column = column;
    draw(state);
    cellof(state).focus({preventScroll: true});
    // Beside the column that sorts, which small windows keep in sight.
    cellof(state).scrollIntoView({block: 'nearest', inline: column < state.sort ? 'start' : 'end'});
}

function print(state, printing) {
    const count = Math.min(PRINTED, state.sorted.length);
    const more = state.sorted.length - count;
    state.printing = printing;
    state.more.textContent = printing && more > 0 ? `and ${number(more)} more rows` : '';
    if (!printing) {
        draw(state);
        return;
    }
    place(state, 0, count);
}

function printall(printing) {
    for (const frame of document.querySelectorAll('.table-view'))
        print(states.get(frame), printing);
}

addEventListener('beforeprint', () => printall(true));
addEventListener('afterprint', () => printall(false));
