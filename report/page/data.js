// ---- What was measured, as the program has written it, with what follows from it ----------------

const report = JSON.parse(byId("data").textContent);

function objects({columns, rows}) {
    return rows.map(row => {
        const object = {};
        columns.forEach((name, index) => { object[name] = row[index]; });
        return object;
    });
}

const runsOf = group => (report.groups[group] ?? {runs: []}).runs.map(index => report.runs[index]);
const ticksMHz = group => runsOf(group).map(run => run.ticksMHz).find(mhz => mhz > 0) ?? null;

// Smallest and largest of the runs; of a single run what it tells of its own spread: the figure is
// the smallest of its calls.
function rangeOf(measured) {
    const {samples, smallest: low, largest: high, median: middle, spread} = measured;
    return samples.length > 1 ? [low, high] : [middle, middle * (1 + (spread ?? 0))];
}

// Figures per byte of uncompressed data wherever it is known what a unit stands for, so that
// methods can be compared with each other.
function completed(measured) {
    measured.method = measured.function + (measured.variant ? ", " + measured.variant : "");
    measured.isPerByte = measured.bytesPerUnit > 0;
    measured.isMeasured = measured.samples.length > 0 && measured.median > 0;
    const bytes = measured.isPerByte ? measured.bytesPerUnit : 1;
    const range = measured.isMeasured ? rangeOf(measured) : [null, null];
    measured.clocks = measured.isMeasured ? measured.median / bytes : null;
    measured.low = measured.isMeasured ? range[0] / bytes : null;
    measured.high = measured.isMeasured ? range[1] / bytes : null;
    const mhz = ticksMHz(measured.group);
    measured.speed = measured.isMeasured && measured.isPerByte && mhz ? mhz / measured.clocks : null;
    measured.key = [measured.method, measured.file, measured.length].join("\n");
    return measured;
}

const cases = objects(report.cases).map(completed);

function groupBy(list, keyOf) {
    const groups = new Map();
    for (const item of list) {
        const key = keyOf(item);
        if (!groups.has(key)) {
            groups.set(key, []);
        }
        groups.get(key).push(item);
    }
    return groups;
}

const distinct = (list, valueOf) => [...new Set(list.map(valueOf))];

// What all names begin with ("ntks") only takes room in plots.
function commonPrefix(names) {
    let prefix = names.length > 2 ? names[0] : "";
    for (const name of names) {
        while (!name.startsWith(prefix)) {
            prefix = prefix.slice(0, -1);
        }
    }
    return /^[a-z]+$/.test(prefix.replace(/[A-Z].*$/, "")) ? prefix.replace(/[A-Z].*$/, "") : "";
}
const functions = distinct(cases, measured => measured.function);
const prefix = commonPrefix(functions.length ? functions
    : distinct(report.comparisons.flatMap(one => objects(one.cases)), one => one.function));
const short = name => name.slice(prefix.length);

// Long variants of a function often begin alike, which only takes room in plots:
// "NtkBWTSortAlgorithmHint=ntkBWTSuffixSort".
const longVariant = 16;
const variantsByFunction = groupBy(cases, measured => measured.function);
const briefVariants = new Map([...variantsByFunction].map(([name, own]) => {
    const variants = distinct(own, measured => measured.variant).filter(Boolean);
    const shared = variants.reduce((start, one) => {
        let end = start.length;
        while (!one.startsWith(start.slice(0, end))) {
            --end;
        }
        return start.slice(0, end);
    }, variants.length > 1 ? variants[0] : "");
    return [name, variants.some(one => one.length > longVariant) ? shared : ""];
}));
const briefVariant = one => (one.variant ?? "").slice(briefVariants.get(one.function)?.length ?? 0);
const briefMethod = one => short(one.function) + (one.variant ? ", " + briefVariant(one) : "");

// What short names of variants stand for, "dict=E" of LZ4, say.
const meanings = new Map(report.meanings.map(([name, variant, meaning]) => [name + "\n" + variant, meaning]));
const meaningOf = one => meanings.get(one.function + "\n" + one.variant) ?? "";
const namesText = methods => distinct(methods.filter(meaningOf), one => `${one.variant}: ${meaningOf(one)}`).join("; ");

const files = distinct(cases, measured => measured.file).filter(Boolean).sort();
const casesByGroup = groupBy(cases, measured => measured.group);
const familyOf = new Map(cases.map(measured => [measured.function, measured.family || "Others"]));

const resultMeanings = {
    OK: "measured",
    ACCURWRN: "the accuracy asked for was not reached",
    BADSTSWRN: "the calls left floating-point exception flags behind",
    DATAWRN: "two measurements have the same parameters",
    FUNCWRN: "the library returned a warning",
    WRN: "note",
    ACCURFAIL: "no clocks could be measured",
    DATAFAIL: "the data could not be prepared",
    FUNCFAIL: "the library returned an error",
    EXCPTFAIL: "the call, or its preparation, faulted",
    FAIL: "an internal problem",
    UNDEFINED: "was not run",
};

