// The question why an object is linked in.
import {addressof, whyaddress} from './address.js';
import {keepers, linksof, path} from './data.js';
import {bytesinwords, counted, element} from './dom.js';
import {calledname} from './report.js';
import {namedthing, suggestfield, suggestions, thingname, unknownname} from './suggest.js';
import {table} from './table.js';

const KINDS = ['symbol', 'object'];

// `from` and `to` are names of symbols or objects, or empty.
export function why(graph, from, to) {
    const find = text => suggestions(graph, text, KINDS);
    const fromfield = suggestfield('When I use', from, find, () => tofield.input.focus());
    const tofield = suggestfield('why is this linked in?', to, find, () => form.requestSubmit());
    const form = element('form', {class: 'question', submit: event => {
        event.preventDefault();
        location.hash = whyaddress(fromfield.input.value.trim(), tofield.input.value.trim());
    }}, fromfield.element, tofield.element, element('button', {type: 'submit'}, 'Show'));
    if (from !== '' && to !== '')
        form.append(element('a', {href: whyaddress(to, from)}, 'The other way round'));
    const {title, parts} = answer(graph, from, to);
    return {title, element: element('div', {}, form, ...parts)};
}

// Returns the title and the elements of the answer.
function answer(graph, from, to) {
    const question = 'Why is it linked in?';
    if (from === '' || to === '') {
        return {title: question, parts: [element('p', {}, 'Name a symbol or an object in both fields. The answer is ' +
                                                          'the shortest chain of references between them.')]};
    }
    const [start, end] = [from, to].map(name => namedthing(graph, name));
    if (start === null || end === null) {
        const [name, address] = start === null ? [from, other => whyaddress(other, to)]
                                               : [to, other => whyaddress(from, other)];
        return {title: question, parts: [element('div', {role: 'alert'}, unknownname(
            graph, name, KINDS, (_, kind, number) => address(thingname(graph, kind, number))))]};
    }
    const lacking = [end, start].find(named => objectof(graph, named) < 0);
    if (lacking !== undefined)
        return notdefined(graph, lacking.number);
    const [first, last] = [start, end].map(({kind, number}) => thingname(graph, kind, number));
    const target = objectof(graph, end);
    const chain = path(graph, objectof(graph, start), target, start.kind === 'symbol' ? start.number : -1);
    if (chain === null) {
        return {title: `${first} does not link in ${last}`,
                parts: [element('p', {}, thing(graph, start), ' does not link in ', ...place(graph, target), '.')]};
    }
    return {title: `Why ${first} links in ${last}`, parts: [
        element('section', {}, element('h2', {}, 'SHORTEST CHAIN'), chainlist(graph, chain, end),
            element('p', {class: 'note'}, 'LINKS IN may show a longer chain: it shows each object where it is linked ' +
                                          'in first.')),
        ...reasons(graph, start, target),
    ]};
}

function notdefined(graph, symbol) {
    const objects = [...new Set(graph.referrers(symbol))];
    return {title: `No object defines ${graph.symbols[symbol]}`, parts: [element('section', {},
        element('p', {}, link(graph, 'symbol', symbol), ' is undefined. ',
            `${counted(objects.length, 'object')} ${objects.length === 1 ? 'refers' : 'refer'} to it.`),
        references(graph, graph.symbols[symbol], objects.map(object => [object, symbol])))]};
}

function objectof(graph, {kind, number}) {
    return kind === 'symbol' ? graph.definer[number] : number;
}

function link(graph, kind, number) {
    const name = kind === 'symbol' ? calledname(graph, number) : graph.objects[number].name;
    return element('a', {href: addressof(graph, kind, number)}, name);
}

function thing(graph, {kind, number}) {
    return link(graph, kind, number);
}

// The object with its library and bytes.
function place(graph, object) {
    const library = graph.libraries[graph.objects[object].library];
    const size = bytesinwords(graph.size(object));
    return [link(graph, 'object', object),
            element('span', {class: 'note'}, ` ${library === undefined ? size : `${library}, ${size}`}`)];
}

function chainlist(graph, chain, end) {
    const isOther = end.kind === 'symbol' && chain.at(-1)[1] !== end.number;
    return element('ol', {class: 'chain'}, chain.map(([object, symbol], i) => element('li', {},
        i > 0 ? [link(graph, 'object', chain[i - 1][0]), ' refers to '] : null,
        symbol >= 0 ? [link(graph, 'symbol', symbol), i > 0 ? ', defined in ' : ' is defined in '] : null,
        ...place(graph, object),
        isOther && i === chain.length - 1 ? [', which defines ', thing(graph, end)] : null)));
}

// All references that keep the target linked in.
function reasons(graph, start, target) {
    const found = keepers(graph, linksof(graph, start.kind, start.number), target);
    const objects = new Set(found.map(([object]) => object)).size;
    const {name} = graph.objects[target];
    const heading = element('h2', {}, `REFERENCES THAT KEEP ${name} LINKED IN`);
    if (found.length === 0)
        return [element('section', {}, heading, element('p', {}, 'None from other objects.'))];
    return [element('section', {}, heading,
        element('p', {}, `${counted(found.length, 'reference')} in ${counted(objects, 'object')} that `,
                thing(graph, start), ' links in'),
        references(graph, name, found))];
}

// Returns the table of references, each [object, symbol], to the thing of the name.
function references(graph, name, found) {
    return table({
        label: `References to ${name}`, rows: found, sort: 0, descending: false,
        columns: [
            {title: 'Object', text: true, value: ([object]) => graph.objects[object].name,
             cell: ([object]) => link(graph, 'object', object)},
            ...(graph.libraries.length === 0 ? [] : [{
                title: 'Library', text: true, value: ([object]) => graph.libraries[graph.objects[object].library],
            }]),
            {title: 'Refers to', text: true, value: ([, symbol]) => graph.symbols[symbol],
             cell: ([, symbol]) => link(graph, 'symbol', symbol)},
        ],
    }).element;
}
