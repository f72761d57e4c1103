// ---- Failures and notes, in their own words --------------------------------------------------------

const failuresAtOnce = 40;

// A message that was said in a row of calls is told once, with how often it was said.
function withoutRepeats(message) {
    const told = [];
    for (const line of message.split("\n")) {
        if (told.at(-1)?.line === line) {
            ++told.at(-1).times;
        } else {
            told.push({line, times: 1});
        }
    }
    return told.map(({line, times}) => (times > 1 ? `${line} (${times} times)` : line)).join("\n");
}

function failureElement(failure) {
    const isBad = failure.isFailure;
    const result = failure.result === "OK" ? "note" : failure.result;
    const meaning = failure.result === "OK" ? "measured, but there was something to say" : resultMeanings[failure.result];
    const title = element("h3", {}, element("span", {className: isBad ? "slower" : ""}, result), ` ${failure.function}`);
    const what = failure.what.split("\n").filter(Boolean).join(", ");
    const where = [meaning, what, report.runs.length > 1 && runName(failure.run)].filter(Boolean).join("; ");
    const said = withoutRepeats(failure.message);
    return element("li", {}, title, element("p", {className: "note"}, where),
        ...(said ? [element("p", {className: "said", tabIndex: 0}, said)] : []));
}

function showSaid(place, list) {
    const items = element("ul", {className: "failures"}, ...list.slice(0, failuresAtOnce).map(failureElement));
    place.append(items);
    if (list.length > failuresAtOnce) {
        const more = element("button", {type: "button"}, `All ${whole(list.length)}`);
        more.addEventListener("click", () => {
            items.append(...list.slice(failuresAtOnce).map(failureElement));
            more.remove();
        });
        place.append(more);
    }
}

function remarks() {
    const cut = report.runs.filter(run => !run.complete).map(run => `${run.file}: the run did not come to its end.`);
    return [...report.remarks, ...cut];
}

function showFailures() {
    const place = byId("failures-list");
    const said = remarks();
    place.replaceChildren();
    if (report.failures.length === 0) {
        place.append(element("p", {}, cases.length ? "Every test was a plain success."
            : "No run is in this report; what failed in a comparison stands in its table."));
    } else {
        const isNote = failure => !failure.isFailure;
        showSaid(place, [...report.failures].sort((a, b) => isNote(a) - isNote(b)));
    }
    if (said.length > 0) {
        place.append(element("h3", {}, "About the files"),
            element("ul", {}, ...said.map(text => element("li", {}, text))));
    }
}

