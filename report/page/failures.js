// ---- Failures and notes, in their own words --------------------------------------------------------

const failureColumns = [
    textColumn("result", "Result"),
    {...textColumn("meaning", "Meaning", failure => resultMeanings[failure.result] ?? ""), isLong: true},
    textColumn("function", "Function"),
    {...textColumn("what", "Test or measurement"), isLong: true},
    {...textColumn("message", "What was said"), isLong: true},
    textColumn("run", "Run", failure => runName(failure.run)),
];

function remarks() {
    const cut = report.runs.filter(run => !run.complete).map(run => `${run.file}: the run did not come to its end.`);
    return [...report.remarks, ...cut];
}

function showFailures() {
    const place = byId("failures-list");
    const said = remarks();
    place.replaceChildren();
    if (report.failures.length === 0) {
        place.append(element("p", {}, cases.length ? "Every test was a plain success." : "No run is in this report."));
    } else {
        new DataTable(place, {caption: `${counted(report.failures.length, "line")}, as the runs wrote them`,
            columns: failureColumns}).show(report.failures);
    }
    if (said.length > 0) {
        place.append(element("h3", {}, "About the files"),
            element("ul", {}, ...said.map(text => element("li", {}, text))));
    }
}

