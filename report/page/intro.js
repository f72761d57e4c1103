// ---- What was measured, and the three things most worth knowing ---------------------------------

const months = "Jan Feb Mar Apr May Jun Jul Aug Sep Oct Nov Dec".split(" ");

// As it was written there, not in the time of where it is read: "2026-11-22T03:36:15+00:00" of
// records, "Sun Nov 22 03:36:15 2026" of tables.
function dayText(started) {
    const found = started.match(/^(?<year>\d{4})-(?<month>\d\d)-(?<day>\d\d)T(?<time>\d\d:\d\d)/) ??
        started.match(/^\w{3} (?<name>\w{3}) +(?<day>\d+) (?<time>\d\d:\d\d):\d\d (?<year>\d{4})$/);
    const {year, month, name, day, time} = found?.groups ?? {};
    return year ? `${Number(day)}\u00a0${name ?? months[month - 1]}\u00a0${year}, ${time}` : started;
}

const inOrder = days => [...days].sort((a, b) => Date.parse(a) - Date.parse(b));

const known = values => [...new Set(values.filter(Boolean))];

function whenText() {
    const days = known(inOrder(report.runs.map(run => run.started)).map(dayText));
    if (days.length === 0) {
        return "";
    }
    const [[day, from], [last, to]] = [days[0], days.at(-1)].map(text => text.split(", "));
    return days.length === 1 ? ` on ${days[0]}`
        : day === last && from && to ? ` on ${day} between ${from} and ${to}`
            : ` between ${days[0]} and ${days.at(-1)}`;
}

function machineText() {
    return known(report.runs.map(run => {
        const details = [
            run.processors > 1 ? `${run.processors} processors` : "",
            run.system.replace(/,?\s*#[^)]*/, ""), // without the number of the kernel's build
            run.computer && `computer ${run.computer}`,
        ].filter(Boolean);
        return run.processor && run.processor + (details.length ? ` (${details.join("; ")})` : "");
    })).join(" and on ");
}

const libraryText = ({name, version, date}) =>
    [name, version, /\d/.test(date) ? `of ${date}` : date].filter(Boolean).join(" ");
const baseName = path => path.slice(path.lastIndexOf("/") + 1);

// Of many nights the builds are in the table of the runs.
const mostBuilds = 3;

function librariesText() {
    const builds = known(report.runs.flatMap(run => run.libraries.map(library => libraryText(library) +
        (library.files.length ? ` (${known(library.files.map(baseName)).join(", ")})` : ""))));
    return builds.length > mostBuilds ? `${builds[0]} to ${builds.at(-1)}, ${builds.length} builds` : listed(builds);
}

function corpusText() {
    const corpus = new Map(report.runs.flatMap(run => run.corpus.map(file => [file.name, file.bytes])));
    if (files.length === 0) {
        return "";
    }
    const bytes = sum([...corpus.values()]);
    return ` on ${counted(files.length, "file")}` + (bytes ? ` (${bytesText(bytes)})` : "");
}

function comparedText() {
    const {comparisons} = report;
    const machines = known(comparisons.map(one => one.machine));
    const days = known(inOrder(comparisons.map(one => one.started)).map(dayText));
    return comparisons.length === 0 ? "" :
        `Two builds of a data-compression library, compared call by call by ntkcompare` +
        (machines.length ? ` on ${machines.join(" and on ")}` : "") +
        (days.length ? `, ${days.length > 1 ? `${days[0]} to ${days.at(-1)}` : days[0]}` : "") +
        `: ${counted(sum(comparisons.map(one => one.cases.rows.length)), "combination")}.`;
}

// What another library is for is not known.
const libraryKind = purpose =>
    (functions.every(name => name.startsWith("ntks")) ? `a ${purpose} library` : "a library");

function whatText() {
    if (report.runs.length === 0) {
        return comparedText() || "Nothing was measured.";
    }
    const keys = known(report.runs.map(run => run.decisiveKeys.join(" ")));
    const machine = machineText();
    const libraries = librariesText();
    return `${counted(functions.length, "function")} of ${libraryKind("data-compression")}${corpusText()}, ` +
        `measured in ${counted(report.runs.length, "run")}${whenText()}` +
        (machine && ` on ${machine}`) + `: ${counted(distinct(cases, measured => measured.key).length, "combination")}.` +
        (libraries && ` Library: ${libraries}.`) +
        (keys.length ? ` Keys: ${keys.join(" / ")}.` : "");
}

function clockText() {
    const mhz = known(report.runs.map(run => run.ticksMHz));
    if (mhz.length === 0) {
        return "A clock is a tick of the processor's time-stamp counter. Smaller is faster.";
    }
    return `A clock is a tick of the processor's time-stamp counter, ${listed(mhz.map(whole))} million ` +
        `a second: ${figure(mhz[0])} clocks per byte are 1 MB/s. Smaller is faster.`;
}

// Of a method its median over the files and lengths: none of them may decide.
function methodFigures(list) {
    return [...groupBy(list, measured => measured.method)].map(([method, own]) => ({
        method, own,
        function: own[0].function, variant: own[0].variant, kind: own[0].kind, family: own[0].family,
        isPerByte: own[0].isPerByte, unit: own[0].unit,
        clocks: median(own.map(measured => measured.clocks)),
        low: median(own.map(measured => measured.clocks)) * median(own.map(one => one.low / one.clocks)),
        high: median(own.map(measured => measured.clocks)) * median(own.map(one => one.high / one.clocks)),
    })).sort((a, b) => b.clocks - a.clocks);
}

function card(title, head, ...lines) {
    return element("div", {className: "card"}, element("h2", {}, title),
        element("p", {className: "figure"}, head), ...lines.map(line => element("p", {}, line)));
}

function slowestCard() {
    const methods = methodFigures(measuredCases()).filter(method => method.isPerByte);
    const title = `Slowest and fastest ${dataText()}`;
    if (methods.length === 0) {
        return card(title, "Nothing to compare", "No measurement of these data tells its clocks per byte.");
    }
    const [slowest, fastest] = [methods[0], methods.at(-1)];
    const lines = [`takes ${figure(slowest.clocks)} clocks per byte, the most. ` +
        `${briefMethod(fastest)} takes the least: ${figure(fastest.clocks)}.`];
    for (const kind of ["encoder", "decoder"]) {
        const own = frontierData(kind).methods;
        if (own.length > 1) {
            lines.push(`Of the complete ${kind}s, on the longest data, ${briefMethod(own[0])} is the fastest (${speedText(own[0])}), ` +
                `${briefMethod(own.at(-1))} the slowest (${speedText(own.at(-1))}).`);
        }
    }
    return card(title, briefMethod(slowest), ...lines);
}

const spreadsWithin = () => runsOf(shownGroup()).length < 2;

function spreadCard() {
    const known = measuredCases().filter(measured => isNumber(measured.spread));
    const title = `Largest spread ${spreadsWithin() ? "within a measurement" : "between the runs"}`;
    if (known.length === 0) {
        return card(title, "Not known", "One run, whose file does not tell how its figures spread.");
    }
    const widest = known.reduce((worst, one) => (one.spread > worst.spread ? one : worst));
    const spreads = known.map(measured => measured.spread);
    return card(title, percent(widest.spread), `${briefMethod(widest)}` +
        (widest.file && ` with ${widest.file}`) +
        (widest.length ? `, ${lengthText(widest.length)} bytes.` : "."),
        `Half of all figures spread by less than ${percent(median(spreads))}, nine in ten by less than ` +
        `${percent(quantile(spreads, 0.9))}.`);
}

function failureCard() {
    const failed = report.failures.filter(failure => failure.isFailure);
    const idle = distinct(report.failures.filter(failure => failure.result === "UNDEFINED"), failure => failure.function);
    const notes = report.failures.filter(failure => !failure.isFailure && failure.result !== "UNDEFINED").length;
    const also = report.remarks.length + report.runs.filter(run => !run.complete).length;
    const names = distinct(failed, failure => failure.function);
    const lines = [];
    if (names.length > 0) {
        lines.push(listed(names.slice(0, 3).map(short)) +
            (names.length > 3 ? ` and ${names.length - 3} more.` : "."));
    }
    if (idle.length > 0) {
        lines.push(`${counted(idle.length, "function")} ${idle.length === 1 ? "was" : "were"} not run.`);
    }
    if (notes + also > 0) {
        lines.push(`${counted(notes + also, "note")}.`);
    }
    const made = card("What failed",
        names.length ? `${counted(names.length, "function")} failed` : "Nothing failed", ...lines);
    made.classList.toggle("bad", names.length > 0);
    if (report.failures.length + also > 0) {
        made.append(element("p", {}, element("a", {href: "#at=failures"}, "In their own words")));
    }
    return made;
}

function effectCard(title, none, list) {
    if (list.length === 0) {
        return card(title, none);
    }
    const most = list.reduce((worst, one) => (Math.abs(Math.log(one.effect)) > Math.abs(Math.log(worst.effect)) ? one : worst));
    return card(title, counted(list.length, "measurement"), `${caseName(most)} the most: ${change(most.effect)}.`);
}

// What to know first where there are no runs, but a comparison.
function comparisonCards({cases: list}) {
    const having = verdict => list.filter(one => one.verdict === verdict);
    const failed = list.filter(one => one.failure);
    return [effectCard("Slower", "Nothing is slower", having("slower")),
        effectCard("Faster", "Nothing is faster", having("faster")),
        card("What failed", failed.length ? counted(failed.length, "measurement") : "Nothing failed",
            ...failed.slice(0, 3).map(one => `${caseName(one)}: ${one.failure}`))];
}

const runColumns = [
    numberColumn("run", "Run", whole, run => report.runs.indexOf(run) + 1),
    textColumn("started", "Started", run => dayText(run.started)),
    {...textColumn("file", "File"), isLong: true},
    {...textColumn("libraries", "Libraries", run => run.libraries.map(library =>
        [libraryText(library), ...library.files].join("\n")).join("\n")), isLong: true},
    {...textColumn("system", "System"), isLong: true},
    {...textColumn("keys", "Keys", run => run.keys.join(" ")), isLong: true},
    numberColumn("measurements", "Measurements", whole),
    textColumn("complete", "Complete", run => (run.complete ? "yes" : "no")),
];

const corpusColumns = [
    textColumn("name", "File"), numberColumn("bytes", "Bytes", whole), textColumn("checksum", "CRC-32"),
];

// Beside what concerns all runs what differs among them, for those who ask.
function showRuns() {
    const corpus = new Map(report.runs.flatMap(run => run.corpus.map(file => [file.name + file.checksum, file])));
    byId("runs").hidden = report.runs.length === 0;
    byId("runs").addEventListener("toggle", () => {
        if (byId("runs").children.length === 1) {
            new DataTable(byId("runs"), {caption: "Runs", columns: runColumns}).show(report.runs);
            if (corpus.size > 0) {
                new DataTable(byId("runs"), {caption: "Data", columns: corpusColumns}).show([...corpus.values()]);
            }
        }
    });
}

function showIntro() {
    const isOnlyComparison = cases.length === 0 && report.comparisons.length > 0;
    byId("title").textContent = isOnlyComparison
        ? "Two builds of a compression library, compared"
        : `Speed of ${libraryKind("compression")}, function by function`;
    byId("what").textContent = whatText();
    byId("clock").textContent = clockText();
    showRuns();
}

function showCards() {
    byId("cards").replaceChildren(...(cases.length ? [slowestCard(), spreadCard(), failureCard()]
        : comparisonMakers.length ? comparisonCards(comparison(0)) : []));
}

