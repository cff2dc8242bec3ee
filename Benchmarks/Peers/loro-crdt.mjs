import { LoroDoc, LoroMap } from "loro-crdt";

import { fieldsOf, idOf } from "./clips.mjs";

function put(document, number) {
    const clip = document.getMap("clips").setContainer(idOf(number), new LoroMap());
    for (const [field, value] of Object.entries(fieldsOf(number))) {
        clip.set(field, value);
    }
}

/// A document that is edited: gives what has to be sent.
export class Source {
    constructor() {
        this.document = new LoroDoc();
        this.updates = null;
        this.document.subscribeLocalUpdates((update) => this.updates?.push(update));
    }
    putAll(count) {
        for (let number = 0; number < count; ++number) {
            put(this.document, number);
        }
        this.document.commit();
        return this.document.export({ mode: "update" });
    }
    put(number) {
        put(this.document, number);
        this.document.commit();
    }
    edit(number) {
        this.document.getMap("clips").get(idOf(number)).set("start", number + 1);
        this.document.commit();
    }
}

export class Replica {
    constructor() {
        this.document = new LoroDoc();
    }
    apply(update) {
        this.document.import(update);
    }
    size() {
        return this.document.getMap("clips").size;
    }
    start(number) {
        return this.document.getMap("clips").get(idOf(number)).get("start");
    }
}
