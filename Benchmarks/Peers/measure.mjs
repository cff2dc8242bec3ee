// node --expose-gc measure.mjs PEER: prints what one peer takes for one clip, as JSON.
//
// The updates are made in a process of its own: what their source holds, or has let go of, does not count.

import { execFileSync } from "node:child_process";
import { mkdtempSync, readFileSync, rmSync, writeFileSync } from "node:fs";
import { tmpdir } from "node:os";
import { join } from "node:path";
import { fileURLToPath } from "node:url";
import { deserialize, serialize } from "node:v8";

import { clips, events, someClip } from "./clips.mjs";

const [, script, peer, makeInto] = process.argv;
const { Source, Replica } = await import(`./${peer}.mjs`);

function makeUpdates() {
    const source = new Source();
    const initial = source.putAll(clips);
    const inserts = (source.updates = []);
    for (let turn = 0; turn < events; ++turn) {
        source.put(clips + turn);
    }
    const edits = (source.updates = []);
    for (let turn = 0; turn < events; ++turn) {
        source.edit(someClip(turn));
    }
    return { initial, inserts, edits };
}

function cpuNanoseconds(work) {
    const before = process.cpuUsage();
    work();
    const used = process.cpuUsage(before);
    return (used.user + used.system) * 1000;
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

if (makeInto !== undefined) {
    writeFileSync(makeInto, serialize(makeUpdates()));
    process.exit(0);
}

const folder = mkdtempSync(join(tmpdir(), "peers-"));
try {
    const file = join(folder, "updates");
    execFileSync(process.execPath, [fileURLToPath(import.meta.url), peer, file]);
    const updates = deserialize(readFileSync(file));
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
    const edits = cpuNanoseconds(() => updates.edits.forEach((update) => replica.apply(update)));
    expect(replica.start(someClip(1)) === someClip(1) + 1, "the edits arrive");
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
            // What is not seen by the engine, such as the memory of WebAssembly, shows in the process.
            bytesPerClip: peer === "loro-crdt" ? Math.max(bytes.engine, bytes.process) : bytes.engine,
            bytes,
        }),
    );
} finally {
    rmSync(folder, { recursive: true });
}
