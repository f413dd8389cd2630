// The graph of objects and symbols, and the questions about it. Symbols, objects and libraries are
// numbers: their positions in the data. -1 stands for none.

// Makes the graph from the data element's object.
// - symbols: names; symbolInfo: each symbol's {type, scope, size}, undefined without a definer.
// - objects: as in the data; libraries: names; title, underscores, sourcePrefix, part: as in the data.
// - definer: each symbol's first object that defines it.
// - Object i has the references refFirst[i] to refFirst[i + 1] - 1: refTarget is the object, refSymbol
//   the symbol. They lack undefined symbols. Of one object's references to the same object only the
//   first is kept.
// - referrers(symbol): the objects that refer to it in the order of the data, one for each reference.
// - size(object): its bytes, 0 when unknown.
export function makegraph(json) {
    const {objects, symbols} = json;
    const definer = new Int32Array(symbols.length).fill(-1);
    const symbolInfo = [];
    objects.forEach((object, number) => {
        for (const [symbol, type, scope, size] of object.defines) {
            if (definer[symbol] >= 0)
                continue;
            definer[symbol] = number;
            symbolInfo[symbol] = {type, scope, size};
        }
    });
    const referrerLists = makereferrers(objects, symbols.length);
    return {
        ...json,
        definer,
        symbolInfo,
        ...makereferences(objects, definer),
        referrers: symbol => referrerLists.lists.subarray(referrerLists.first[symbol],
                                                          referrerLists.first[symbol + 1]),
        size: object => objects[object].size ?? 0,
    };
}

function makereferences(objects, definer) {
    const count = objects.reduce((sum, object) => sum + object.refers.length, 0);
    const refFirst = new Int32Array(objects.length + 1);
    const refTarget = new Int32Array(count);
    const refSymbol = new Int32Array(count);
    const seen = new Int32Array(objects.length).fill(-1); // last object that refers to each object
    let used = 0;
    objects.forEach((object, number) => {
        for (const symbol of object.refers) {
            const target = definer[symbol];
            if (target < 0 || seen[target] === number)
                continue;
            seen[target] = number;
            refTarget[used] = target;
            refSymbol[used++] = symbol;
        }
        refFirst[number + 1] = used;
    });
    return {refFirst, refTarget: refTarget.subarray(0, used), refSymbol: refSymbol.subarray(0, used)};
}

// Returns the objects that refer to symbol i as lists[first[i]] to lists[first[i + 1] - 1].
function makereferrers(objects, symbolCount) {
    const first = new Int32Array(symbolCount + 1);
    for (const object of objects) {
        for (const symbol of object.refers)
            ++first[symbol + 1];
    }
    for (let symbol = 0; symbol < symbolCount; ++symbol)
        first[symbol + 1] += first[symbol];
    const lists = new Int32Array(first[symbolCount]);
    const next = first.slice();
    objects.forEach((object, number) => {
        for (const symbol of object.refers)
            lists[next[symbol]++] = number;
    });
    return {first, lists};
}

// Returns the objects that the object links in, itself first, in the order and at the levels of the
// reports. `symbol` is the cause of the first one.
// - objects, levels, causes (symbols), parents: one entry for each linked object. A parent is a
//   position in these arrays, -1 at the top.
// - below: bytes of the object and of those under it; ends: position after the last one under it.
// - total: bytes of all.
export function closure(graph, object, symbol = -1) {
    const walk = beginwalk(graph);
    follow(graph, walk, object, symbol, 0);
    return endwalk(graph, walk);
}

// Returns what the reports show for an object: the definer of its first symbol at level 0, then the
// objects that it refers to from level 1. There may be none at level 0.
export function objectclosure(graph, object) {
    const walk = beginwalk(graph);
    const [definition] = graph.objects[object].defines;
    if (definition !== undefined)
        list(walk, graph.definer[definition[0]], definition[0], 0);
    for (let i = graph.refFirst[object]; i < graph.refFirst[object + 1]; ++i)
        follow(graph, walk, graph.refTarget[i], graph.refSymbol[i], 1);
    return endwalk(graph, walk);
}

// Returns the closure of an object as `kind` "symbol" or "object" shows it; null for a symbol
// without a definer.
export function linksof(graph, kind, number) {
    if (kind === 'object')
        return objectclosure(graph, number);
    return graph.definer[number] < 0 ? null : closure(graph, graph.definer[number], number);
}

function beginwalk(graph) {
    const count = graph.objects.length;
    return {
        marks: new Uint8Array(count), // 1: listed
        stack: new Int32Array(count), // objects that are being followed
        next: new Int32Array(count),  // their next references
        objects: new Int32Array(count),
        levels: new Int32Array(count),
        causes: new Int32Array(count),
        count: 0,
    };
}

function list(walk, object, symbol, level) {
    walk.marks[object] = 1;
    walk.objects[walk.count] = object;
    walk.levels[walk.count] = level;
    walk.causes[walk.count++] = symbol;
}

// Lists the object and those that it links in, unless it is listed. A stack instead of recursion:
// chains may be of any length.
function follow(graph, walk, object, symbol, level) {
    if (walk.marks[object] !== 0)
        return;
    list(walk, object, symbol, level);
    const {refFirst, refTarget, refSymbol} = graph;
    const {marks, stack} = walk;
    let depth = 1;
    stack[0] = object;
    walk.next[object] = refFirst[object];
    while (depth > 0) {
        const from = stack[depth - 1];
        const end = refFirst[from + 1];
        let next = walk.next[from];
        while (next < end && marks[refTarget[next]] !== 0)
            ++next;
        if (next === end) {
            --depth;
            continue;
        }
        walk.next[from] = next + 1;
        const target = refTarget[next];
        list(walk, target, refSymbol[next], level + depth);
        walk.next[target] = refFirst[target];
        stack[depth++] = target;
    }
}

function endwalk(graph, walk) {
    const count = walk.count;
    const levels = walk.levels.slice(0, count);
    const objects = walk.objects.slice(0, count);
    const parents = new Int32Array(count);
    const ends = new Int32Array(count).fill(count);
    const open = []; // the current entry of each level
    for (let i = 0; i < count; ++i) {
        for (let level = levels[i]; level < open.length; ++level) {
            if (open[level] !== undefined)
                ends[open[level]] = i;
        }
        parents[i] = open[levels[i] - 1] ?? -1;
        open.length = levels[i];
        open[levels[i]] = i;
    }
    const below = new Float64Array(count);
    let total = 0;
    for (let i = count - 1; i >= 0; --i) {
        const size = graph.size(objects[i]);
        total += size;
        below[i] += size;
        if (parents[i] >= 0)
            below[parents[i]] += below[i];
    }
    return {objects, levels, causes: walk.causes.slice(0, count), parents, ends, below, total};
}

// Returns the shortest chain from an object to another as [[object, symbol], ...]: each symbol links
// its object in. The first one is the given symbol. Null when `to` is not linked in.
export function path(graph, from, to, symbol = -1) {
    const reached = new Int32Array(graph.objects.length).fill(-1); // reference, or -2 for the start
    const queue = [from];
    const source = new Map();
    reached[from] = -2;
    for (let i = 0; i < queue.length && reached[to] === -1; ++i) {
        const object = queue[i];
        for (let j = graph.refFirst[object]; j < graph.refFirst[object + 1]; ++j) {
            const target = graph.refTarget[j];
            if (reached[target] !== -1)
                continue;
            reached[target] = j;
            source.set(target, object);
            queue.push(target);
        }
    }
    if (reached[to] === -1)
        return null;
    const chain = [];
    for (let object = to; object !== from; object = source.get(object))
        chain.push([object, graph.refSymbol[reached[object]]]);
    chain.push([from, symbol]);
    return chain.reverse();
}

// Returns all references in the closure from other objects to symbols of the object, as
// [[object, symbol], ...] in the closure's order.
export function keepers(graph, linked, object) {
    const found = [];
    for (const from of linked.objects) {
        if (from === object)
            continue;
        for (const symbol of graph.objects[from].refers) {
            if (graph.definer[symbol] === object)
                found.push([from, symbol]);
        }
    }
    return found;
}

export {closureTotals, libraryUsers, linkedBy} from './sums.js';
