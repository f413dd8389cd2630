// Text fields that suggest names of symbols and objects.
import {addressof, findexact, spellings} from './address.js';
import {element} from './dom.js';
import {calledname} from './report.js';
import {makeindex, nearest, search} from './search.js';

const SHOWN = 12;
const OFFERED = 5;

let fields = 0;

// Returns the thing that a text names, {kind, number}, null for none: a symbol, an object, or an
// object as LIBRARY(OBJECT).
export function namedthing(graph, text) {
    for (const name of spellings(graph, text, ['symbol', 'object'])) {
        const member = name.match(/^(.*)\((.*)\)$/s);
        const forms = [
            {kind: 'symbol', name},
            {kind: 'object', name},
            ...(member === null ? [] : [{kind: 'object', name: member[2], library: member[1]}]),
        ];
        for (const form of forms) {
            const number = findexact(graph, form);
            if (number >= 0)
                return {kind: form.kind, number};
        }
    }
    return null;
}

// Returns the texts for a name that nothing of the kinds has. They offer the nearest names as links to
// address(graph, kind, number).
export function unknownname(graph, name, kinds = ['symbol', 'object'], address = addressof) {
    const near = nearest(makeindex(graph), name, OFFERED, kinds);
    return element('div', {}, element('p', {}, `There is no ${kinds.join(' or ')} ${name}.`),
        near.length === 0 ? null : element('p', {}, 'Nearest names: ', near.map(({kind, number, name: other}, i) => [
            i > 0 ? ', ' : '',
            element('a', {href: address(graph, kind, number)}, kind === 'symbol' ? calledname(graph, number) : other),
        ])));
}

// Returns the shortest text that names the thing. Only the first of several objects with the same
// name and library has one.
export function thingname(graph, kind, number) {
    if (kind === 'symbol')
        return graph.symbols[number];
    const {name, library} = graph.objects[number];
    const thing = namedthing(graph, name);
    const isFirst = thing.kind === kind && thing.number === number;
    return isFirst || library === undefined ? name : `${graph.libraries[library]}(${name})`;
}

// Returns the names of the given kinds that contain the text, each as {name, kind}.
export function suggestions(graph, text, kinds) {
    return search(makeindex(graph), text, SHOWN, kinds).found
        .map(({kind, number}) => ({kind, name: thingname(graph, kind, number)}));
}

// Returns {element, input}. find(text) returns the suggestions. onchoose() is called after the reader
// chooses one.
export function suggestfield(label, value, find, onchoose) {
    const id = `suggest-${++fields}`;
    // A list that scrolls is no stop of the Tab key.
    const list = element('ul', {role: 'listbox', id, 'aria-label': label, tabindex: -1, hidden: true});
    const input = element('input', {
        type: 'text', role: 'combobox', 'aria-autocomplete': 'list', 'aria-expanded': 'false',
        'aria-controls': id, autocomplete: 'off', spellcheck: 'false', autocapitalize: 'off',
    });
    input.value = value;
    const field = {input, list, id, find, onchoose, active: -1};
    input.addEventListener('input', () => suggest(field));
    input.addEventListener('blur', () => close(field));
    input.addEventListener('keydown', event => {
        if (presskey(field, event.key))
            event.preventDefault();
    });
    // The field keeps the focus.
    list.addEventListener('mousedown', event => event.preventDefault());
    list.addEventListener('click', event => {
        const option = event.target.closest('[role=option]');
        if (option !== null)
            choose(field, option);
    });
    return {
        element: element('div', {class: 'suggest'}, element('label', {}, element('span', {}, label), input), list),
        input,
    };
}

function suggest(field) {
    const {input, list, id} = field;
    const found = input.value === '' ? [] : field.find(input.value);
    list.replaceChildren(...found.map(({name, kind}, i) => element('li', {
        role: 'option', id: `${id}-${i}`, 'aria-selected': 'false', 'data-name': name,
    }, name, ' ', element('span', {class: 'note'}, kind))));
    list.hidden = found.length === 0;
    input.setAttribute('aria-expanded', !list.hidden);
    activate(field, -1);
}

function close(field) {
    field.list.hidden = true;
    field.input.setAttribute('aria-expanded', 'false');
    activate(field, -1);
}

function activate(field, at) {
    const {input, list} = field;
    field.active = at;
    [...list.children].forEach((option, i) => option.setAttribute('aria-selected', i === at));
    if (at < 0) {
        input.removeAttribute('aria-activedescendant');
        return;
    }
    input.setAttribute('aria-activedescendant', list.children[at].id);
    list.children[at].scrollIntoView({block: 'nearest'});
}

function choose(field, option) {
    field.input.value = option.dataset.name;
    close(field);
    field.onchoose();
}

// Returns whether the key means something to the list.
function presskey(field, key) {
    const {list, active} = field;
    const count = list.children.length;
    if (list.hidden && key === 'ArrowDown') {
        suggest(field);
        return true;
    }
    if (list.hidden)
        return false;
    if (key === 'ArrowDown')
        activate(field, (active + 1) % count);
    else if (key === 'ArrowUp')
        activate(field, (active <= 0 ? count : active) - 1);
    else if (key === 'Enter' && active >= 0)
        choose(field, list.children[active]);
    else if (key === 'Escape')
        close(field);
    else
        return false;
    return true;
}
