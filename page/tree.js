// LINKS IN as a tree that folds: one row for each linked object.
import {addressof} from './address.js';
import {element, number, virtuallist} from './dom.js';

const MAXINDENT = 16; // levels; deeper rows have their level as a number

// Makes the tree of a closure. `onselect(object)` is called when the reader moves to a row.
// select(object) moves to the object's row and unfolds what is above it; it calls nothing.
export function linktree(graph, linked, onselect) {
    const count = linked.objects.length;
    const closed = new Uint8Array(count);
    const siblings = countsiblings(linked);
    const positions = new Map(Array.from(linked.objects, (object, position) => [object, position]));
    let visible = [];
    let selected = -1; // position

    const isparent = position => linked.ends[position] > position + 1;
    const makerow = index => treerow(graph, linked, visible[index], {
        ...siblings(visible[index]),
        expanded: isparent(visible[index]) ? closed[visible[index]] === 0 : null,
        selected: visible[index] === selected,
        fold: () => toggle(visible[index]),
    });

    const showvisible = () => {
        visible = [];
        for (let i = 0; i < count; i = closed[i] !== 0 ? linked.ends[i] : i + 1)
            visible.push(i);
        rows.update(visible.length);
    };

    // Returns the row of a position, or of the folded one above it.
    const rowof = position => {
        let low = 0;
        let high = visible.length;
        while (high - low > 1) {
            const middle = low + high >> 1;
            if (visible[middle] <= position)
                low = middle;
            else
                high = middle;
        }
        return low;
    };

    // Makes the position's row, or the folded one above it, the active one.
    const redraw = position => {
        const hadFocus = rows.element.contains(document.activeElement);
        showvisible();
        if (hadFocus)
            rows.focus(rowof(position));
        else
            rows.show(rowof(position));
    };

    const fold = (position, value) => {
        if (!isparent(position) || closed[position] === value)
            return;
        closed[position] = value;
        redraw(position);
    };
    const toggle = position => fold(position, 1 - closed[position]);

    const foldall = value => {
        for (let i = 0; i < count; ++i)
            closed[i] = value !== 0 && linked.parents[i] >= 0 && isparent(i) ? 1 : 0;
        redraw(Math.max(selected, 0));
    };

    const mark = position => {
        selected = position;
        for (const row of rows.element.querySelectorAll('[role=treeitem]'))
            row.setAttribute('aria-selected', Number(row.dataset.position) === position);
    };

    const key = (event, index) => {
        const position = visible[index];
        const keys = {
            'ArrowRight': () => (closed[position] !== 0 || !isparent(position)
                ? fold(position, 0) : rows.focus(index + 1)),
            'ArrowLeft': () => (isparent(position) && closed[position] === 0
                ? fold(position, 1) : rows.focus(rowof(Math.max(linked.parents[position], 0)))),
            '+': () => fold(position, 0),
            '-': () => fold(position, 1),
            '*': () => foldall(0),
        };
        if (event.key in keys) {
            keys[event.key]();
            event.preventDefault();
        } else if (event.key === 'Enter' && event.target.getAttribute('role') === 'treeitem') {
            location.hash = addressof(graph, 'object', linked.objects[position]);
            event.preventDefault();
        }
    };

    const rows = virtuallist(makerow, {role: 'tree', 'aria-label': 'LINKS IN', rowclass: 'row treerow', key});
    rows.element.addEventListener('focusin', event => {
        const row = event.target.closest('[role=treeitem]');
        const position = row === null ? selected : Number(row.dataset.position);
        if (position === selected)
            return;
        mark(position);
        onselect(linked.objects[position]);
    });
    showvisible();

    const buttons = element('p', {class: 'buttons'},
        element('button', {type: 'button', click: () => foldall(0)}, 'Unfold all'),
        element('button', {type: 'button', click: () => foldall(1)}, 'Fold all'));
    return {
        element: element('div', {class: graph.libraries.length === 0 ? 'tree nolibraries' : 'tree'}, buttons, treehead(), rows.element),
        select(object) {
            const position = positions.get(object);
            if (position === undefined || position === selected)
                return;
            for (let above = linked.parents[position]; above >= 0; above = linked.parents[above])
                closed[above] = 0;
            selected = position;
            redraw(position);
        },
    };
}

// Returns a function of a position that returns its place among its siblings.
function countsiblings(linked) {
    const counts = new Map();
    const places = Array.from(linked.parents, parent => {
        const place = (counts.get(parent) ?? 0) + 1;
        counts.set(parent, place);
        return place;
    });
    return position => ({place: places[position], size: counts.get(linked.parents[position])});
}

function treehead() {
    return element('div', {class: 'treerow treehead', 'aria-hidden': 'true'},
        element('span', {class: 'name'}, 'object [symbol that links it in]'),
        element('span', {class: 'library'}, 'library'),
        element('span', {class: 'own'}, 'bytes'),
        element('span', {class: 'below'}, 'with below'));
}

function treerow(graph, linked, position, {place, size, expanded, selected, fold}) {
    const object = linked.objects[position];
    const cause = linked.causes[position];
    const level = linked.levels[position];
    const {name, library} = graph.objects[object];
    const libraryName = graph.libraries[library] ?? '';
    const own = graph.size(object);
    const below = linked.below[position];
    const link = (kind, thing, text) =>
        element('a', {href: addressof(graph, kind, thing), tabindex: -1, title: text}, text);
    const unseen = text => element('span', {class: 'unseen'}, text);
    const first = element('span', {class: 'name'},
        element('span', {class: 'twisty', 'aria-hidden': 'true', click: fold},
            expanded === null ? '' : expanded ? '▾' : '▸'),
        level > MAXINDENT ? element('span', {class: 'level'}, `${level}:`) : null,
        link('object', object, name),
        element('span', {class: 'cause'}, unseen(' linked in by'), ' [', link('symbol', cause, graph.symbols[cause]), ']'));
    first.style.paddingInlineStart = `calc(${Math.min(level, MAXINDENT)} * var(--step))`;
    return element('div', {
        class: 'row treerow', role: 'treeitem', tabindex: -1, 'data-position': position,
        'aria-level': level + 1, 'aria-setsize': size, 'aria-posinset': place,
        'aria-expanded': expanded === null ? null : String(expanded), 'aria-selected': String(selected),
    }, first,
    element('span', {class: 'library', title: libraryName}, libraryName),
    element('span', {class: 'own'}, number(own), unseen(' bytes,')),
    element('span', {class: 'below'}, number(below), unseen(' bytes with those below')));
}
