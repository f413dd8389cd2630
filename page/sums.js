// What every object reaches, as sums. Objects that reach each other are one group; the sets of
// groups are rows of bits, found in slices so that the page stays responsive.

const ROWWORDS = 16;
const ROWBITS = ROWWORDS * 32;
const SLICE = 12; // milliseconds

const known = new WeakMap(); // graph -> {totals, linkers}: promises

function cached(graph, key, make) {
    if (!known.has(graph))
        known.set(graph, {});
    const results = known.get(graph);
    results[key] ??= make();
    return results[key];
}

// Returns a promise of the bytes that each object links in, itself included.
export function closureTotals(graph) {
    const weights = Float64Array.from(graph.objects, (_, object) => graph.size(object));
    return cached(graph, 'totals', () => reachsums(graph.refFirst, graph.refTarget, weights));
}

// Returns a promise of the number of other objects that link each object in, directly or not.
export function linkedBy(graph) {
    return cached(graph, 'linkers', async () => {
        const {first, target} = reverse(graph.refFirst, graph.refTarget);
        const ones = new Float64Array(graph.objects.length).fill(1);
        return (await reachsums(first, target, ones)).map(count => count - 1);
    });
}

// Returns a promise of the number of objects outside each library that link in an object of it. A node
// for each library refers to its objects.
export function libraryUsers(graph) {
    return cached(graph, 'users', async () => {
        const {first, target} = reverse(graph.refFirst, graph.refTarget);
        const members = graph.libraries.map(() => []);
        graph.objects.forEach(({library}, object) => members[library]?.push(object));
        let end = target.length;
        const ends = members.map(({length}) => end += length);
        const count = graph.objects.length;
        const weights = new Float64Array(count + members.length).fill(1, 0, count);
        const sums = await reachsums(Int32Array.from([...first, ...ends]),
                                     Int32Array.from([...target, ...members.flat()]), weights);
        return members.map(({length}, library) => sums[count + library] - length);
    });
}

function reverse(first, target) {
    const count = first.length - 1;
    const newFirst = new Int32Array(count + 1);
    for (const object of target)
        ++newFirst[object + 1];
    for (let object = 0; object < count; ++object)
        newFirst[object + 1] += newFirst[object];
    const newTarget = new Int32Array(target.length);
    const next = newFirst.slice();
    for (let object = 0; object < count; ++object) {
        for (let i = first[object]; i < first[object + 1]; ++i)
            newTarget[next[target[i]]++] = object;
    }
    return {first: newFirst, target: newTarget};
}

// Returns each node's sum of the weights of all nodes that it reaches, its own included.
async function reachsums(first, target, weights) {
    const groupOf = findgroups(first, target);
    const groups = joingroups(first, target, weights, groupOf);
    const rows = new Int32Array(groups.weights.length * ROWWORDS);
    const sums = new Float64Array(groups.weights.length);
    let begin = performance.now();
    for (let base = 0; base < sums.length; base += ROWBITS) {
        const tables = makesumtables(groups.weights, base);
        // Targets have lower numbers: a group below the row's first bit reaches none of its bits.
        for (let group = base; group < sums.length; ++group) {
            sums[group] += addrow(groups, rows, group, base, tables);
            if (group % 256 === 0 && performance.now() - begin > SLICE) {
                await new Promise(resume => setTimeout(resume));
                begin = performance.now();
            }
        }
    }
    return Float64Array.from(groupOf, group => sums[group]);
}

// Sets the group's row to the union of its targets' rows and its own bit. Returns the row's sum.
function addrow(groups, rows, group, base, tables) {
    const row = group * ROWWORDS;
    rows.fill(0, row, row + ROWWORDS);
    for (let i = groups.first[group]; i < groups.first[group + 1]; ++i) {
        const from = groups.target[i] * ROWWORDS;
        if (groups.target[i] < base)
            continue;
        for (let word = 0; word < ROWWORDS; ++word)
            rows[row + word] |= rows[from + word];
    }
    if (group < base + ROWBITS)
        rows[row + (group - base >> 5)] |= 1 << (group - base & 31);
    let sum = 0;
    for (let word = 0; word < ROWWORDS; ++word) {
        const bits = rows[row + word];
        for (let i = 0; bits !== 0 && i < 4; ++i)
            sum += tables[(word * 4 + i) * 256 + (bits >>> i * 8 & 255)];
    }
    return sum;
}

// Returns for each byte of a row 256 sums, one for each value of the byte.
function makesumtables(weights, base) {
    const tables = new Float64Array(ROWWORDS * 4 * 256);
    for (let byte = 0; byte < ROWWORDS * 4; ++byte) {
        for (let bits = 1; bits < 256; ++bits) {
            const top = 31 - Math.clz32(bits);
            tables[byte * 256 + bits] = tables[byte * 256 + (bits ^ 1 << top)] +
                                        (weights[base + byte * 8 + top] ?? 0);
        }
    }
    return tables;
}

// Returns the groups' references, each once, and weights.
function joingroups(first, target, weights, groupOf) {
    const count = groupOf.reduce((most, group) => Math.max(most, group + 1), 0);
    const sums = new Float64Array(count);
    const members = Array.from({length: count}, () => []);
    groupOf.forEach((group, node) => {
        sums[group] += weights[node];
        members[group].push(node);
    });
    const groups = {weights: sums, first: new Int32Array(count + 1),
                    target: new Int32Array(target.length)};
    const seen = new Int32Array(count).fill(-1);
    let used = 0;
    for (let group = 0; group < count; ++group) {
        seen[group] = group;
        for (const node of members[group]) {
            for (let i = first[node]; i < first[node + 1]; ++i) {
                const to = groupOf[target[i]];
                if (seen[to] !== group)
                    groups.target[used++] = to;
                seen[to] = group;
            }
        }
        groups.first[group + 1] = used;
    }
    return groups;
}

// Returns each node's group by Tarjan's algorithm, without recursion. A group's references lead to
// groups with lower numbers.
function findgroups(first, target) {
    const count = first.length - 1;
    const groupOf = new Int32Array(count).fill(-1);
    const visit = new Int32Array(count); // order of visits from 1; 0 before the visit
    const low = new Int32Array(count);   // lowest visit reached in `open`
    const next = first.slice(0, count);
    const open = []; // visited nodes without a group
    const trail = [];
    let visits = 0;
    let groups = 0;
    const enter = node => {
        visit[node] = low[node] = ++visits;
        open.push(node);
        trail.push(node);
    };
    const leave = node => {
        trail.pop();
        if (trail.length > 0) {
            const above = trail[trail.length - 1];
            low[above] = Math.min(low[above], low[node]);
        }
        if (low[node] !== visit[node])
            return;
        for (let member = -1; member !== node;) {
            member = open.pop();
            groupOf[member] = groups;
        }
        ++groups;
    };
    for (let start = 0; start < count; ++start) {
        if (visit[start] === 0)
            enter(start);
        while (trail.length > 0) {
            const node = trail[trail.length - 1];
            if (next[node] === first[node + 1]) {
                leave(node);
                continue;
            }
            const to = target[next[node]++];
            if (visit[to] === 0)
                enter(to);
            else if (groupOf[to] < 0)
                low[node] = Math.min(low[node], visit[to]);
        }
    }
    return groupOf;
}
