// The differences between the objects of two builds. Objects are the same when name and library are.
import {addressof, parseaddress} from './address.js';
import {linksof} from './data.js';
import {bytesinwords, counted, element, number} from './dom.js';
import {calledname} from './report.js';
import {namedthing, suggestfield, suggestions, unknownname} from './suggest.js';
import {table} from './table.js';

const LISTED = 30; // names in a line

// Links lead to the things of `graph`, the new build. The address may name a symbol.
export function compare(graph, old) {
    const builds = [old, graph].map(build => ({graph: build, keys: keysof(build)}));
    const all = builds.map(build => [...build.graph.objects.keys()]);
    const {name = ''} = parseaddress(location.hash);
    const symbols = symbolchanges(builds);
    const lost = symbols.filter(({state, symbol}) => state === 'removed' && symbol >= 0);
    return {
        title: `Changes from ${old.title} to ${graph.title}`,
        element: element('div', {},
            lost.length === 0 ? null : section('NOW UNDEFINED', element('p', {},
                `Objects still refer to ${counted(lost.length, 'symbol')} that only the old build defines: `,
                ...listed(lost, ({symbol}) => symbollink(graph, symbol)))),
            section('TOTALS', totals(builds, all)),
            section('WHAT A SYMBOL LINKS IN', ...symbolchange(builds, name, lost)),
            section('OBJECTS', ...changes('Objects', builds, all)),
            haslibraries(builds) ? section('LIBRARIES', librarychanges(builds)) : null,
            section('SYMBOLS', ...symboltable(builds, symbols))),
    };
}

function haslibraries(builds) {
    return builds.some(({graph}) => graph.libraries.length > 0);
}

function symbollink(graph, symbol) {
    return element('a', {href: addressof(graph, 'symbol', symbol)}, calledname(graph, symbol));
}

// Returns what `show` makes of the first things, with commas, and the number of the others.
function listed(things, show) {
    const shown = things.slice(0, LISTED).flatMap((thing, i) => [i > 0 ? ', ' : '', show(thing)]);
    return things.length > LISTED ? [...shown, ` and ${number(things.length - LISTED)} more`] : shown;
}

function section(heading, ...children) {
    return element('section', {}, element('h2', {}, heading), ...children);
}

// Returns each object's key: name, library and which one of these.
function keysof(graph) {
    const counts = new Map();
    return graph.objects.map(({name, library}) => {
        const place = JSON.stringify([name, graph.libraries[library]]);
        const count = counts.get(place) ?? 0;
        counts.set(place, count + 1);
        return place + count;
    });
}

// "+1,204", "−12", "0"
function signed(value) {
    return value === 0 ? '0' : `${value > 0 ? '+' : '−'}${number(Math.abs(value))}`;
}

function sum(graph, objects) {
    return objects.reduce((total, object) => total + graph.size(object), 0);
}

function totals(builds, all) {
    const refers = graph => graph.objects.reduce((count, object) => count + object.refers.length, 0);
    const count = (title, value) => [title, ...builds.map(({graph}, i) => value(graph, all[i]))];
    return changetable('Totals', [
        count('Bytes', sum),
        count('Objects', graph => graph.objects.length),
        ...(haslibraries(builds) ? [count('Libraries', graph => graph.libraries.length)] : []),
        count('Symbols', graph => graph.symbols.length),
        count('References', refers),
    ]);
}

// A table of few rows: [title, old, new].
function changetable(label, rows) {
    const cells = values => values.map(value => element('td', {class: 'number'}, value));
    return element('div', {class: 'table'}, element('table', {class: 'totals', 'aria-label': label},
        element('thead', {}, element('tr', {}, element('td', {class: 'text'}), ['Old', 'New', 'Change'].map(title =>
            element('th', {scope: 'col', class: 'number'}, title)))),
        element('tbody', {}, rows.map(([title, before, after]) => element('tr', {},
            element('th', {scope: 'row', class: 'text'}, title),
            cells([number(before), number(after), signed(after - before)]))))));
}

// Returns the objects that are not of the same size in both lists, as {name, library, before, after,
// state, object}. `object` is that of the new build, -1 for none.
function differences(builds, lists) {
    const [old, now] = builds;
    const before = new Map(Array.from(lists[0], object => [old.keys[object], object]));
    const rows = [];
    const add = (graph, object, sizes, at) => {
        const {name, library} = graph.objects[object];
        rows.push({name, library: graph.libraries[library], ...sizes, state: stateof(sizes), object: at});
    };
    for (const object of lists[1]) {
        const match = before.get(now.keys[object]);
        before.delete(now.keys[object]);
        const after = now.graph.size(object);
        if (match === undefined || old.graph.size(match) !== after)
            add(now.graph, object, {before: match === undefined ? undefined : old.graph.size(match), after}, object);
    }
    for (const object of before.values())
        add(old.graph, object, {before: old.graph.size(object), after: undefined}, -1);
    return rows;
}

function stateof({before, after}) {
    if (before === undefined)
        return 'added';
    if (after === undefined)
        return 'removed';
    return after > before ? 'grew' : 'shrank';
}

function changes(label, builds, lists) {
    const rows = differences(builds, lists);
    const counts = {added: 0, removed: 0, grew: 0, shrank: 0};
    for (const {state} of rows)
        ++counts[state];
    const same = lists[1].length - rows.length + counts.removed;
    const summary = Object.entries(counts).map(([state, count]) => `${number(count)} ${state}`).join(', ');
    const {graph} = builds[1];
    const removed = rows.filter(({state}) => state === 'removed');
    const columns = [
        {title: 'Object', text: true, value: row => row.name, cell: row => row.object < 0 ? oldname(row)
            : element('a', {href: addressof(graph, 'object', row.object)}, row.name)},
        ...(haslibraries(builds) ? [{title: 'Library', text: true, value: row => row.library}] : []),
        {title: 'Change', text: true, value: row => row.state},
        ...changecolumns,
    ];
    return [
        element('p', {}, `${summary}, ${number(same)} as large as before`),
        rows.length <= LISTED || removed.length === 0 ? null
            : element('p', {}, 'Removed: ', ...listed(removed, oldname)),
        rows.length === 0 ? null : table({label, rows, columns, sort: columns.length - 1}).element,
    ];
}

// The name of a thing that the new build does not have.
function oldname({name}) {
    return element('bdi', {}, name);
}

const changecolumns = [
    {title: 'Old bytes', value: row => row.before},
    {title: 'New bytes', value: row => row.after},
    {title: 'Difference', value: difference, cell: row => signed(difference(row))},
];

function difference({before = 0, after = 0}) {
    return after - before;
}

function librarychanges(builds) {
    const rows = new Map();
    builds.forEach(({graph}, i) => graph.objects.forEach((object, at) => {
        const name = graph.libraries[object.library] ?? 'no library';
        const row = rows.get(name) ?? {name};
        const side = i === 0 ? 'before' : 'after';
        row[side] = (row[side] ?? 0) + graph.size(at);
        rows.set(name, row);
    }));
    return table({
        label: 'Libraries', rows: [...rows.values()], sort: 3,
        columns: [{title: 'Library', text: true, value: row => row.name}, ...changecolumns],
    }).element;
}

// Returns the symbols that only one of the builds defines, as {name, state, object, symbol}. `object`
// is the name of the definer, `symbol` the number in the new build, -1 for none.
function symbolchanges([old, now]) {
    const numbers = new Map(now.graph.symbols.map((name, symbol) => [name, symbol]));
    const [before, after] = [old, now].map(({graph}) => new Map(graph.symbols.flatMap((name, symbol) =>
        graph.definer[symbol] < 0 ? [] : [[name, graph.objects[graph.definer[symbol]].name]])));
    const missing = (names, others, state) => [...names].filter(([name]) => !others.has(name))
        .map(([name, object]) => ({name, state, object, symbol: numbers.get(name) ?? -1}));
    return [...missing(before, after, 'removed'), ...missing(after, before, 'added')];
}

function symboltable(builds, rows) {
    const {graph} = builds[1];
    const removed = rows.filter(({state}) => state === 'removed').length;
    return [
        element('p', {}, `${number(rows.length - removed)} added, ${number(removed)} removed`),
        rows.length === 0 ? null : table({
            label: 'Symbols', rows, sort: 1,
            columns: [
                {title: 'Symbol', text: true, value: row => row.name,
                 cell: row => row.symbol < 0 ? oldname(row) : symbollink(graph, row.symbol)},
                {title: 'Change', text: true, value: row => row.state},
                {title: 'Object', text: true, value: row => row.object},
                {title: 'References', value: ({symbol}) => symbol < 0 ? 0 : graph.referrers(symbol).length},
            ],
        }).element,
    ];
}

// The field for a symbol and the difference of all that it links in.
function symbolchange(builds, name, lost) {
    const find = text => {
        const found = builds.flatMap(({graph}) => suggestions(graph, text, ['symbol']));
        return [...new Map(found.map(symbol => [symbol.name, symbol])).values()];
    };
    const field = suggestfield('Symbol', name, find, () => form.requestSubmit());
    const form = element('form', {class: 'question', submit: event => {
        event.preventDefault();
        location.hash = compareaddress(field.input.value.trim());
    }}, field.element, element('button', {type: 'submit'}, 'Show'));
    return [form, ...(name === '' ? [] : closurechange(builds, name, lost))];
}

function compareaddress(name) {
    return `#compare=${encodeURIComponent(name)}`;
}

function closurechange(builds, name, lost) {
    const symbols = builds.map(build => namedthing(build.graph, name))
        .map(found => found?.kind === 'symbol' ? found : null);
    if (symbols.every(found => found === null))
        return [element('div', {role: 'alert'}, unknownname(
            builds[1].graph, name, ['symbol'], ({symbols: names}, _, number) => compareaddress(names[number])))];
    const linked = builds.map((build, i) => symbols[i] && linksof(build.graph, 'symbol', symbols[i].number));
    if (linked.every(links => links === null))
        return [element('p', {role: 'alert'}, `No object defines ${name} in either build.`)];
    const lists = linked.map(links => Array.from(links?.objects ?? []));
    const bytes = builds.map(({graph}, i) => sum(graph, lists[i]));
    const words = ['old', 'new'].map((build, i) => linked[i] === null ? `no object of the ${build} build defines it`
        : `${bytesinwords(bytes[i])} in ${counted(lists[i].length, 'object')} of the ${build} build`);
    const {graph} = builds[1];
    const refers = new Set(lists[1].flatMap(object => graph.objects[object].refers));
    const missed = lost.filter(({symbol}) => refers.has(symbol));
    return [
        element('p', {}, element('bdi', {}, name), `: ${words.join(', ')}.`),
        missed.length === 0 ? null : element('p', {},
            'Objects of the new build refer to symbols that only the old build defines: ',
            ...listed(missed, ({symbol}) => symbollink(graph, symbol))),
        changetable(`Totals of ${name}`, [['Bytes', ...bytes], ['Objects', ...lists.map(list => list.length)]]),
        ...changes(`Objects that ${name} links in`, builds, lists),
    ];
}
