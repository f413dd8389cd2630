// Tables of any length that the reader sorts. Only the rows on the screen are in the document, and
// the row that has the focus.
import {element, number} from './dom.js';

const OVERSCAN = 6; // rows above and below the screen
const PRINTED = 500;

const states = new WeakMap(); // scrolling element -> state

// Returns {element, update(rows)}.
// - label: the table's name for those who do not see it.
// - columns: [{title, text, value(row), cell(row)}, ...]: value is a number to sort by, a text where
//   `text` is true, undefined when unknown; cell returns an element or text to show, by default the
//   value.
// - rows: array, of which a sorted copy is shown. update() takes new ones, or the old ones when their
//   values have changed.
// - sort, descending: the column that sorts first.
export function table({label, columns, rows, sort = 0, descending = true}) {
    const body = element('tbody');
    const heads = columns.map((column, i) => element('th', {scope: 'col', class: column.text ? 'text' : 'number'},
        element('button', {type: 'button', click: () => sortby(state, i)}, column.title,
                element('span', {class: 'sort-mark', 'aria-hidden': 'true'}))));
    const grid = element('table', {role: 'grid', 'aria-label': label, 'aria-colcount': columns.length},
        element('thead', {}, element('tr', {'aria-rowindex': 1}, heads)), body);
    const frame = element('div', {class: 'table-view', tabindex: -1}, grid);
    const more = element('p', {class: 'table-more'});
    const state = {
        columns, grid, body, frame, heads, more, sort, descending, rows: [...rows],
        drawn: new Map(), height: 0, row: 0, column: 0,
    };
    listen(state);
    sortrows(state);
    return {
        element: element('div', {class: 'table'}, frame, more),
        update: (newRows = state.rows) => {
            state.rows = [...newRows];
            sortrows(state);
        },
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
        head.querySelector('.sort-mark').textContent = i !== sort ? '' : descending ? ' ▼' : ' ▲';
    });
    grid.setAttribute('aria-rowcount', rows.length + 1);
    state.drawn.clear();
    state.row = 0;
    state.frame.scrollTop = 0;
    draw(state);
}

function draw(state) {
    const {frame, grid, sorted} = state;
    if (frame.clientHeight === 0)
        return;
    if (state.height === 0 && sorted.length > 0) {
        place(state, 0, 1);
        state.height = state.drawn.get(0).getBoundingClientRect().height;
    }
    const shown = Math.ceil(frame.clientHeight / (state.height || 1));
    const first = Math.max(0, Math.floor(frame.scrollTop / (state.height || 1)) - OVERSCAN);
    place(state, Math.min(first, sorted.length), Math.min(sorted.length, first + shown + 2 * OVERSCAN));
}

// Puts the rows from first to last - 1 into the document.
function place(state, first, last) {
    const {body, drawn, height, sorted, frame} = state;
    const hadFocus = body.contains(document.activeElement);
    const kept = new Map();
    for (let i = first; i < last; ++i)
        kept.set(i, drawn.get(i) ?? makerow(state, i));
    state.drawn = kept;
    const old = new Set(body.children);
    const wanted = [space(first * height), ...kept.values(), space((sorted.length - last) * height)];
    for (const row of old) {
        if (!wanted.includes(row))
            row.remove();
    }
    let next = null;
    for (const row of wanted.reverse()) {
        if (row.parentNode !== body || row.nextSibling !== next)
            body.insertBefore(row, next);
        next = row;
    }
    settabstops(state);
    if (hadFocus && !body.contains(document.activeElement))
        frame.focus({preventScroll: true});
}

function space(height) {
    const row = element('tr', {class: 'space', 'aria-hidden': 'true'});
    row.style.height = `${height}px`;
    return row;
}

function makerow(state, i) {
    const row = state.sorted[i];
    const cells = state.columns.map((column, at) => {
        const value = column.value(row);
        const shown = column.cell?.(row) ?? (typeof value === 'number' ? number(value) : value ?? '');
        return element(at === 0 ? 'th' : 'td', {
            class: column.text ? 'text' : 'number', scope: at === 0 ? 'row' : null, tabindex: -1,
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

// The Tab key stops at one cell.
function settabstops({body, drawn, row, column}) {
    for (const stop of body.querySelectorAll('[tabindex="0"]'))
        stop.setAttribute('tabindex', -1);
    const at = drawn.get(row) ?? drawn.values().next().value;
    if (at !== undefined)
        focusable(at.cells[column]).setAttribute('tabindex', 0);
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
    if (top < frame.scrollTop)
        frame.scrollTop = top;
    else if (top > frame.scrollTop + window)
        frame.scrollTop = top - window;
    state.row = row;
    state.column = column;
    draw(state);
    focusable(state.drawn.get(row).cells[column]).focus({preventScroll: true});
}

function print(state, printing) {
    const count = Math.min(PRINTED, state.sorted.length);
    const more = state.sorted.length - count;
    state.more.textContent = printing && more > 0 ? `and ${number(more)} more rows` : '';
    if (!printing) {
        draw(state);
        return;
    }
    place(state, 0, count);
    state.body.lastChild.style.height = '0';
}

function printall(printing) {
    for (const frame of document.querySelectorAll('.table-view'))
        print(states.get(frame), printing);
}

addEventListener('beforeprint', () => printall(true));
addEventListener('afterprint', () => printall(false));
