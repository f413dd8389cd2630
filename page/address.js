// Addresses: the part after '#' says what the page shows. `#symbol=NAME`, `#object=NAME&library=NAME`
// and `#library=NAME` name a thing, with `&n=2` the second one of these names. Names are encoded.

// Returns the parts of an address as {kind, name, library, n}. `name` is undefined without '='.
export function parseaddress(hash) {
    const [head, ...rest] = hash.replace(/^#/, '').split('&');
    const [kind, name] = splitpart(head);
    return {...Object.fromEntries(rest.map(splitpart)), kind, name};
}

function splitpart(part) {
    const at = part.indexOf('=');
    return at < 0 ? [part, undefined] : [part.slice(0, at), decode(part.slice(at + 1))];
}

// A malformed name is taken as it is.
export function decode(text) {
    try {
        return decodeURIComponent(text);
    } catch {
        return text;
    }
}

// Encodes a name; of the characters that encodeURIComponent leaves, browsers and mail programs change
// some.
function encode(name) {
    return encodeURIComponent(name)
        .replace(/[!'()*]/g, letter => `%${letter.charCodeAt(0).toString(16).toUpperCase()}`);
}

// Returns the address of a thing; `kind` is symbol, object, library or source, which is an object's.
export function addressof(graph, kind, number) {
    if (kind === 'symbol') {
        const name = graph.symbols[number];
        return `#symbol=${encode(name)}${nth(namesakes(graph, 'symbol', name), number)}`;
    }
    if (kind === 'library')
        return `#library=${encode(graph.libraries[number])}`;
    const {name, library} = graph.objects[number];
    const alike = namesakes(graph, 'object', name).filter(i => graph.objects[i].library === library);
    const where = library === undefined ? '' : `&library=${encode(graph.libraries[library])}`;
    return `#object=${encode(name)}${where}${nth(alike, number)}`;
}

export function whyaddress(from, to) {
    return `#why=${encode(from)},${encode(to)}`;
}

export function searchaddress(text) {
    return `#search=${encode(text)}`;
}

function nth(alike, number) {
    const at = alike.indexOf(number);
    return at > 0 ? `&n=${at + 1}` : '';
}

// Returns the name in a text that has blanks around it or, as the page prints functions, "()" after it.
export function plainname(text) {
    return text.trim().replace(/(?<=.)\(\)$/, '');
}

// Yields the names that a text may mean, the most exact first. The last one differs in letter case; it
// is the only such name of the kinds.
export function* spellings(graph, text, kinds) {
    const plain = plainname(text);
    yield* [text, text.trim(), plain];
    const lower = plain.toLowerCase();
    const alike = kinds.flatMap(kind => [...tablesof(graph)[kind].keys()].filter(name => name.toLowerCase() === lower));
    if (new Set(alike).size === 1)
        yield alike[0];
}

// Returns the number of the thing that a parsed address names; -1 when there is none.
export function findthing(graph, address) {
    for (const name of spellings(graph, address.name, [address.kind])) {
        const number = findexact(graph, {...address, name});
        if (number >= 0)
            return number;
    }
    return -1;
}

// Like findthing(), for an exact name. A symbol may have an underscore less before or after its name, an
// object any library when none is named.
export function findexact(graph, {kind, name, library, n}) {
    const nthof = found => found[(Number(n) || 1) - 1] ?? -1;
    if (kind === 'library')
        return graph.libraries.indexOf(name);
    if (kind === 'symbol') {
        const forms = [name, `_${name}`, `${name}_`];
        return nthof(forms.map(form => namesakes(graph, kind, form)).find(list => list.length > 0) ?? []);
    }
    const found = namesakes(graph, 'object', name);
    const exact = found.filter(i => graph.libraries[graph.objects[i].library] === library);
    return nthof(exact.length === 0 && library === undefined ? found : exact);
}

const tables = new WeakMap(); // graph -> {symbol, object, library}: name -> numbers

function tablesof(graph) {
    if (!tables.has(graph)) {
        tables.set(graph, {
            symbol: bynames(graph.symbols),
            object: bynames(graph.objects.map(object => object.name)),
            library: bynames(graph.libraries),
        });
    }
    return tables.get(graph);
}

function namesakes(graph, kind, name) {
    return tablesof(graph)[kind].get(name) ?? [];
}

function bynames(names) {
    const table = new Map();
    names.forEach((name, number) => {
        const list = table.get(name);
        if (list === undefined)
            table.set(name, [number]);
        else
            list.push(number);
    });
    return table;
}
