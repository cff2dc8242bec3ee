// node measure.mjs PEER make FILE:          writes the updates that one peer makes of the clips
// node --expose-gc measure.mjs PEER FILE:   prints what it takes the peer to apply them, for one clip, as JSON
//
// In two processes: what the updates' source holds, or has let go of, does not count.

import { readFileSync, writeFileSync } from "node:fs";
import { join } from "node:path";
import { fileURLToPath } from "node:url";
import { deserialize, serialize } from "node:v8";

import { clips, events, someClip } from "./clips.mjs";

const [, , peer, ...rest] = process.argv;
const { Source, Replica } = await import(`./${peer}.mjs`);

function makeUpdates() {
    const inserting = new Source();
    const initial = inserting.putAll(clips);
    const inserts = (inserting.updates = []);
    for (let turn = 0; turn < events; ++turn) {
        inserting.put(clips + turn);
    }
    // Of a document without the inserts: each kind of event meets one that holds the clips and no more.
    const editing = new Source();
    const initialOfEdits = editing.putAll(clips);
    const edits = (editing.updates = []);
    for (let turn = 0; turn < events; ++turn) {
        editing.edit(someClip(turn));
    }
    return { initial, inserts, initialOfEdits, edits };
}

// Of the thread that works, as for the component: what the engine's helpers compile and collect meanwhile does not count.
function threadNanoseconds() {
    return Number(readFileSync(`/proc/self/task/${process.pid}/schedstat`, "ascii").split(" ")[0]);
}

function cpuNanoseconds(work) {
    const before = threadNanoseconds();
    work();
    return threadNanoseconds() - before;
}

// The heap of the engine, what lies outside of it, and the pages of the process, of which compiled code has some, too.
function memory() {
    for (let turn = 0; turn < 4; ++turn) {
        globalThis.gc();
    }
    const usage = process.memoryUsage();
    return { engine: usage.heapUsed + usage.external, process: usage.rss };
}

function expect(condition, what) {
    if (!condition) {
        throw new Error(`${peer}: ${what}`);
    }
}

if (rest[0] === "make") {
    writeFileSync(rest[1], serialize(makeUpdates()));
} else {
    measure(deserialize(readFileSync(rest[0])));
}

function measure(updates) {
    expect(updates.inserts.length === events && updates.edits.length === events, "one update an edit");

    // The first replica pays for the compilation; it is kept, so that what is measured finds no room that it has left.
    const warm = new Replica();
    warm.apply(updates.initial);
    const before = memory();
    const replica = new Replica();
    const initial = cpuNanoseconds(() => replica.apply(updates.initial));
    expect(replica.size() === clips, "all clips arrive");
    const after = memory();
    const inserts = cpuNanoseconds(() => updates.inserts.forEach((update) => replica.apply(update)));
    expect(replica.size() === clips + events, "all inserts arrive");
    const edited = new Replica();
    edited.apply(updates.initialOfEdits);
    const edits = cpuNanoseconds(() => updates.edits.forEach((update) => edited.apply(update)));
    expect(edited.size() === clips && edited.start(someClip(1)) === someClip(1) + 1, "the edits arrive");
    expect(warm.size() === clips, "the first replica is kept");

    const { version } = JSON.parse(
        readFileSync(join(fileURLToPath(new URL(".", import.meta.url)), "node_modules", peer, "package.json")),
    );
    const bytes = {
        engine: (after.engine - before.engine) / clips,
        process: (after.process - before.process) / clips,
    };
    console.log(
        JSON.stringify({
            peer,
            version,
            nanoseconds: {
                "initial update": initial / clips,
                "single inserts": inserts / events,
                "single field edits": edits / events,
            },
            // The engine does not see all of the memory of WebAssembly; what the process has taken does not hold what it had room
            // for before. The smaller of the two is in the peer's favour.
            bytesPerClip: peer === "loro-crdt" ? Math.min(...Object.values(bytes).filter((count) => count > 0)) : bytes.engine,
            bytes,
        }),
    );
}
