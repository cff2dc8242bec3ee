import * as Y from "yjs";

import { fieldsOf, idOf } from "./clips.mjs";

function put(document, number) {
    const clip = new Y.Map(Object.entries(fieldsOf(number)));
    document.getMap("clips").set(idOf(number), clip);
}

/// A document that is edited: gives what has to be sent.
export class Source {
    constructor() {
        this.document = new Y.Doc();
        this.updates = null;
        this.document.on("update", (update) => this.updates?.push(update));
    }
    putAll(count) {
        this.document.transact(() => {
            for (let number = 0; number < count; ++number) {
                put(this.document, number);
            }
        });
        return Y.encodeStateAsUpdate(this.document);
    }
    put(number) {
        put(this.document, number);
    }
    edit(number) {
        this.document.getMap("clips").get(idOf(number)).set("start", number + 1);
    }
}

export class Replica {
    constructor() {
        this.document = new Y.Doc();
    }
    apply(update) {
        Y.applyUpdate(this.document, update);
    }
    size() {
        return this.document.getMap("clips").size;
    }
    start(number) {
        return this.document.getMap("clips").get(idOf(number)).get("start");
    }
}
