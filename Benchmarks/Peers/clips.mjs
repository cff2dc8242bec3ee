// The same clips for every peer: what the component's benchmarks put on a timeline.

export const clips = 100_000;
export const events = clips;
const rows = 40;

export function idOf(number) {
    const hex = (number + 1).toString(16).padStart(12, "0");
    return `3f0c8b52-66a1-4e0e-9c1d-${hex}`;
}

export function fieldsOf(number) {
    return {
        start: number,
        end: number + 5,
        row: `Code ${number % rows}`,
        label: "attack",
        notes: "left wing, second half",
    };
}

// A clip somewhere in the middle of all of them; another one for each turn.
export const someClip = (turn) => (turn * 7_919) % clips;
