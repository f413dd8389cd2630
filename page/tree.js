// LINKS IN as a tree that folds: one row for each linked object. A position is that of an object in
// the closure; rows are the positions that no folded row hides.
import {addressof} from './address.js';
import {element, number} from './dom.js';
import {virtuallist} from './virtual.js';

const MAXINDENT = 16; // levels; deeper rows have their level as a number

// Makes the tree of a closure. Returns {element, select(object)}. `onselect(object)` is called when
// the reader moves to a row. select() moves to the object's row and unfolds the rows around it; it
// calls nothing. `whyof(object)` returns the address of the reason for an object.
export function linktree(graph, linked, onselect, whyof) {
    const state = {
        graph, linked, onselect, whyof,
        siblings: countsiblings(linked.parents),
        positions: new Map(Array.from(linked.objects, (object, position) => [object, position])),
        folded: new Uint8Array(linked.objects.length),
        shown: [], // position of each row
        selected: -1,
    };
    state.rows = virtuallist(index => makerow(state, state.shown[index]), {
        role: 'tree', 'aria-label': 'LINKS IN', rowclass: 'row treerow', head: treehead(),
        key: (event, index) => {
            if (presskey(state, event, state.shown[index]))
                event.preventDefault();
        },
    });
    state.rows.element.addEventListener('focusin', event => {
        const row = event.target.closest('[role=treeitem]');
        if (row !== null && Number(row.dataset.position) !== state.selected)
            choose(state, Number(row.dataset.position));
    });
    updaterows(state);
    const button = (text, folded) => element('button', {type: 'button', click: () => foldall(state, folded)}, text);
    const kind = graph.libraries.length === 0 ? 'tree nolibraries' : 'tree';
    const tree = element('div', {class: kind},
        element('p', {class: 'buttons'}, button('Unfold all', 0), button('Fold all', 1)), state.rows.element);
    tree.style.setProperty('--digits', `${number(linked.total).length}ch`);
    return {element: tree, select: object => select(state, object)};
}

// Returns each position's place among those with the same parent, and their number.
function countsiblings(parents) {
    const counts = new Map();
    const places = Array.from(parents, parent => {
        const place = (counts.get(parent) ?? 0) + 1;
        counts.set(parent, place);
        return place;
    });
    return position => ({place: places[position], count: counts.get(parents[position])});
}

function hasbelow({linked}, position) {
    return linked.ends[position] > position + 1;
}

function updaterows(state) {
    const {linked, folded} = state;
    state.shown = [];
    for (let i = 0; i < folded.length; i = folded[i] !== 0 ? linked.ends[i] : i + 1)
        state.shown.push(i);
    state.rows.update(state.shown.length);
}

// Returns the row of a position, or of the folded one around it.
function rowof({shown}, position) {
    let low = 0;
    let high = shown.length;
    while (high - low > 1) {
        const middle = low + high >> 1;
        if (shown[middle] <= position)
            low = middle;
        else
            high = middle;
    }
    return low;
}

// Draws the tree with the position's row as the active one.
function redraw(state, position) {
    const hadFocus = state.rows.element.contains(document.activeElement);
    updaterows(state);
    if (hadFocus)
        state.rows.focus(rowof(state, position));
    else
        state.rows.show(rowof(state, position));
}

function fold(state, position, folded) {
    if (!hasbelow(state, position) || state.folded[position] === folded)
        return;
    state.folded[position] = folded;
    redraw(state, position);
}

// Folds all rows that are not at the top, or unfolds all.
function foldall(state, folded) {
    for (let i = 0; i < state.folded.length; ++i)
        state.folded[i] = state.linked.parents[i] >= 0 && hasbelow(state, i) ? folded : 0;
    redraw(state, Math.max(state.selected, 0));
}

// Returns whether the key is one of the tree's.
function presskey(state, event, position) {
    const {linked, rows} = state;
    const isOpen = hasbelow(state, position) && state.folded[position] === 0;
    const focus = place => rows.focus(rowof(state, place));
    const keys = {
        'ArrowRight': () => (isOpen ? focus(position + 1) : fold(state, position, 0)),
        'ArrowLeft': () => (isOpen ? fold(state, position, 1) : focus(Math.max(linked.parents[position], 0))),
        '+': () => fold(state, position, 0),
        '-': () => fold(state, position, 1),
        '*': () => foldall(state, 0),
    };
    // Links in the row follow Enter themselves.
    if (event.target.matches('[role=treeitem]')) {
        keys.Enter = () => {
            location.hash = addressof(state.graph, 'object', linked.objects[position]);
        };
    }
    keys[event.key]?.();
    return event.key in keys;
}

function choose(state, position) {
    state.selected = position;
    for (const row of state.rows.element.querySelectorAll('[role=treeitem]'))
        row.setAttribute('aria-selected', Number(row.dataset.position) === position);
    state.onselect(state.linked.objects[position]);
}

function select(state, object) {
    const {linked, folded} = state;
    const position = state.positions.get(object);
    if (position === undefined || position === state.selected)
        return;
    for (let around = linked.parents[position]; around >= 0; around = linked.parents[around])
        folded[around] = 0;
    state.selected = position;
    redraw(state, position);
}

function treehead() {
    return element('div', {class: 'treerow treehead', 'aria-hidden': 'true'},
        element('span', {class: 'name'}, 'object [symbol that links it in]'),
        element('span', {class: 'why'}),
        element('span', {class: 'library'}, 'library'),
        element('span', {class: 'own'}, 'bytes'),
        element('span', {class: 'below'}, 'with below'));
}

function makerow(state, position) {
    const {graph, linked} = state;
    const {place, count} = state.siblings(position);
    const isOpen = state.folded[position] === 0;
    const object = linked.objects[position];
    const library = graph.libraries[graph.objects[object].library] ?? '';
    const unseen = text => element('span', {class: 'unseen'}, text);
    return element('div', {
        class: 'row treerow', role: 'treeitem', tabindex: -1, 'data-position': position,
        'aria-level': linked.levels[position] + 1, 'aria-setsize': count, 'aria-posinset': place,
        'aria-expanded': hasbelow(state, position) ? String(isOpen) : null,
        'aria-selected': String(position === state.selected),
    }, namecell(state, position, unseen),
    element('span', {class: 'why'}, linked.levels[position] === 0 ? null : element('a', {
        href: state.whyof(object), tabindex: -1, 'aria-label': `why is ${graph.objects[object].name} linked in?`,
    }, 'why')),
    element('span', {class: 'library', title: library}, library),
    element('span', {class: 'own'}, number(graph.size(object)), unseen(' bytes,')),
    element('span', {class: 'below'}, number(linked.below[position]), unseen(' bytes with those below')));
}

function namecell(state, position, unseen) {
    const {graph, linked, folded} = state;
    const level = linked.levels[position];
    const object = linked.objects[position];
    const cause = linked.causes[position];
    const mark = folded[position] !== 0 ? '▸' : '▾';
    const link = (kind, thing, text) =>
        element('a', {href: addressof(graph, kind, thing), tabindex: -1, title: text}, text);
    const cell = element('span', {class: 'name'},
        element('span', {
            class: 'twisty', 'aria-hidden': 'true', click: () => fold(state, position, 1 - folded[position]),
        }, hasbelow(state, position) ? mark : ''),
        level > MAXINDENT ? element('span', {class: 'level'}, `${level}:`) : null,
        link('object', object, graph.objects[object].name),
        element('span', {class: 'cause'}, unseen(' linked in by'), ' [',
            link('symbol', cause, graph.symbols[cause]), ']'));
    cell.style.paddingInlineStart = `calc(${Math.min(level, MAXINDENT)} * var(--step))`;
    return cell;
}
