// ---- What the reader has chosen. It is kept in the address, so that a copied address shows the
// ---- same -----------------------------------------------------------------------------------------

const defaults = {
    at: "", theme: "", data: "", group: String(Math.max(0, report.groups.length - 1)), f: "", v: "", c: "", cmp: "0", verdict: "",
    q: "", result: "", sort: "", page: "1",
};
const state = {...defaults};
const listeners = [];

// change(keys) is called with the set of names that have changed.
const onChange = listener => listeners.push(listener);

function stateText() {
    const changed = Object.entries(state).filter(([key, value]) => value !== defaults[key]);
    return new URLSearchParams(changed).toString();
}

function tell(changed) {
    if (changed.size > 0) {
        listeners.forEach(listener => listener(changed));
    }
}

function take(values) {
    const changed = new Set();
    for (const [key, value] of Object.entries(values)) {
        if (key in defaults && state[key] !== value) {
            state[key] = value;
            changed.add(key);
        }
    }
    return changed;
}

function choose(values) {
    const changed = take(values);
    if (changed.has("group") && !functionsOfGroup().includes(state.f)) {
        take({f: firstFunction()}).forEach(key => changed.add(key));
    }
    history.replaceState(null, "", "#" + stateText());
    tell(changed);
}

function stateOfAddress() {
    return {...defaults, ...Object.fromEntries(new URLSearchParams(location.hash.slice(1)))};
}

const functionsOfGroup = () => distinct(groupCases(), measured => measured.function);

// What is shown until the reader chooses: something that the chosen runs have measured.
function firstFunction() {
    const own = functionsOfGroup();
    const all = own.length > 0 ? own : functions;
    return all.find(name => /EncodeLZ4_/.test(name)) ?? all[0] ?? "";
}

// An address that somebody sent or typed may name what is not here.
function repair() {
    const isOneOf = (key, values) => values.includes(state[key]) || (state[key] = defaults[key]);
    isOneOf("data", ["", "-", ...files]);
    isOneOf("group", report.groups.map((_, index) => String(index)));
    isOneOf("f", functions);
    isOneOf("theme", ["light", "dark"]);
    state.f ||= firstFunction();
}

function readAddress() {
    const changed = take(stateOfAddress());
    repair();
    return changed;
}

window.addEventListener("hashchange", () => tell(readAddress()));

// The cases of the chosen group, and of the chosen data: all, one file, or those without a file.
const shownGroup = () => Number(state.group);
const groupCases = () => casesByGroup.get(shownGroup()) ?? [];
const isChosenData = measured =>
    state.data === "" || measured.file === (state.data === "-" ? "" : state.data);
const chosenCases = () => groupCases().filter(isChosenData);
const measuredCases = () => chosenCases().filter(measured => measured.isMeasured);

function dataText() {
    if (state.data === "") {
        return files.length > 1 ? `over all ${files.length} files` : "over all data";
    }
    return state.data === "-" ? "for data without a file" : `for ${state.data}`;
}

