// Finding things by a part of their name.
import {plainname} from './address.js';

export const kinds = ['symbol', 'object', 'library', 'source'];

const indexes = new WeakMap(); // graph -> index

// Returns the index of all names, which is made once. Shorter names come first.
export function makeindex(graph) {
    if (!indexes.has(graph))
        indexes.set(graph, newindex(graph));
    return indexes.get(graph);
}

function newindex(graph) {
    const names = [];
    const things = []; // kind and number in one
    const add = (kind, number, name) => {
        names.push(name);
        things.push(number * kinds.length + kind);
    };
    graph.symbols.forEach((name, number) => add(0, number, name));
    graph.objects.forEach((object, number) => add(1, number, object.name));
    graph.libraries.forEach((name, number) => add(2, number, name));
    graph.objects.forEach((object, number) => {
        if (object.source !== undefined)
            add(3, number, object.source);
    });
    const order = bylength(names);
    return {
        names: order.map(i => names[i]),
        lower: order.map(i => names[i].toLowerCase()),
        things: order.map(i => things[i]),
    };
}

// Returns the positions of the names, the shortest first, those of one length in their order.
function bylength(names) {
    const lists = [];
    names.forEach((name, i) => {
        lists[name.length] ??= [];
        lists[name.length].push(i);
    });
    return lists.flat();
}

// Finds the names that contain the text, letter case ignored: first the name itself, then names that
// begin with the text, then names with a word that begins with it, then others. Returns at most
// `limit` of them as {found: [{kind, number, name}], more: number of the others}. The number of a
// source is its object's. Only things of the kinds in `chosen` are found.
export function search(index, text, limit, chosen = kinds) {
    const wanted = plainname(text).toLowerCase();
    const ranks = [[], [], [], []];
    let count = 0;
    for (let i = 0; wanted !== '' && i < index.lower.length; ++i) {
        const at = index.lower[i].indexOf(wanted);
        if (at < 0 || !chosen.includes(kinds[index.things[i] % kinds.length]))
            continue;
        ++count;
        const rank = ranks[rankof(index.lower[i], wanted, at)];
        if (rank.length < limit)
            rank.push(i);
    }
    const found = ranks.flat().slice(0, limit).map(i => ({
        kind: kinds[index.things[i] % kinds.length],
        number: Math.floor(index.things[i] / kinds.length),
        name: index.names[i],
    }));
    return {found, more: count - found.length};
}

// Returns what search() finds for the longest beginning of the text that is in a name.
export function nearest(index, text, limit, chosen) {
    const found = length => search(index, text.slice(0, length), limit, chosen).found;
    let [low, high] = [1, text.length];
    while (high - low > 1) {
        const middle = low + high >> 1;
        if (found(middle).length > 0)
            low = middle;
        else
            high = middle;
    }
    return low > 1 ? found(low) : []; // one letter is in too many names
}

function rankof(name, wanted, at) {
    if (at === 0)
        return name.length === wanted.length ? 0 : 1;
    return /[a-z0-9]/.test(name[at - 1]) ? 3 : 2;
}
