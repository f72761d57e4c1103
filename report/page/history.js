// ---- The history of a function, run by run ---------------------------------------------------------

const historyPlot = new Plot(byId("history-plot"));

// run -> clocks, of one combination in all groups.
function samplesByRun(list) {
    const byRun = new Map();
    for (const measured of list) {
        const bytes = measured.isPerByte ? measured.bytesPerUnit : 1;
        measured.samples.forEach(([run, clocks]) => byRun.set(run, clocks / bytes));
    }
    return byRun;
}

// All combinations that every run has, as one figure: their geometric mean.
function meanByRun(combinations) {
    const all = [...combinations.values()].map(samplesByRun);
    const runs = largest(all.map(byRun => byRun.size));
    const complete = all.filter(byRun => byRun.size === runs);
    return new Map([...complete[0].keys()].map(run =>
        [run, geometricMean(complete.filter(byRun => byRun.has(run)).map(byRun => byRun.get(run)))]));
}

// What two neighbouring runs differ by as a rule.
function stepNoise(values) {
    const steps = values.slice(1).map((value, index) => Math.abs(Math.log(value / values[index])));
    return steps.length ? median(steps) : 0;
}

// A jump stands out from the runs before by much more than those differ among themselves. What stays
// where it has jumped to is no jump again.
function markJumps(points) {
    const noise = stepNoise(points.map(point => point.clocks));
    let level = 0; // of the last jump
    points.forEach((point, index) => {
        const before = points.slice(Math.max(level, index - 5), index).map(one => one.clocks);
        point.ratio = before.length ? point.clocks / median(before) : 1;
        point.isJump = before.length > 0 && Math.abs(Math.log(point.ratio)) > Math.max(0.02, 4 * noise);
        level = point.isJump ? index : level;
    });
    return points;
}

// In the order of time; of runs that do not tell it in that of the files.
function inTime(a, b) {
    const [before, after] = [a, b].map(point => Date.parse(report.runs[point.run].started));
    return (before - after) || a.run - b.run;
}

// Nights are known by their days.
function nameByDay(points) {
    const days = points.map(point => dayText(report.runs[point.run].started).split(/\u00a0\d{4},/)[0]);
    const isByDay = new Set(days).size === days.length;
    points.forEach((point, index) => { point.name = isByDay ? days[index] : runName(point.run); });
    return points;
}

function historyPoints(combinations) {
    const chosen = combinations.get(state.c);
    const byRun = chosen ? samplesByRun(chosen) : meanByRun(combinations);
    return markJumps(nameByDay([...byRun].map(([run, clocks]) => ({run, clocks})).sort(inTime)));
}

const groupOfRun = run => report.groups.findIndex(group => group.runs.includes(run));
const runName = run => `run ${run + 1}`;

function runText(run) {
    const {started, file} = report.runs[run];
    return [runName(run), started && dayText(started), file].filter(Boolean).join(", ");
}

function drawJumps(points, chart, ctx) {
    ctx.save();
    ctx.font = "600 " + smallFont();
    ctx.textAlign = "center";
    ctx.fillStyle = colour("text");
    chart.getDatasetMeta(0).data.forEach((point, index) => {
        if (points[index].isJump) {
            ctx.fillText(change(points[index].ratio), point.x, point.y - 13);
        }
    });
    ctx.restore();
}

// Where another build begins. Where nearly every run is one of another build it would tell nothing.
const isBorder = (points, index) => index > 0 && groupOfRun(points[index].run) !== groupOfRun(points[index - 1].run);
const hasBorders = points => points.filter((_, index) => isBorder(points, index)).length <= Math.max(1, points.length / 3);

function drawBorders(points, chart, ctx) {
    if (!hasBorders(points)) {
        return;
    }
    const {top, bottom} = chart.chartArea;
    const marks = chart.getDatasetMeta(0).data;
    ctx.save();
    ctx.strokeStyle = colour("muted");
    ctx.setLineDash([3, 4]);
    points.forEach((_, index) => {
        if (isBorder(points, index)) {
            const x = (marks[index].x + marks[index - 1].x) / 2;
            ctx.beginPath();
            ctx.moveTo(x, top);
            ctx.lineTo(x, bottom);
            ctx.stroke();
        }
    });
    ctx.restore();
}

function historyConfig(points, title) {
    const own = colour("accent");
    const clocks = points.map(point => point.clocks);
    const room = Math.max(largest(clocks) - smallest(clocks), smallest(clocks) * 0.04);
    return {
        type: "line",
        data: {
            labels: points.map(point => point.name),
            datasets: [{
                data: clocks, borderColor: own, borderWidth: 1.75, pointBorderWidth: 1.5,
                pointStyle: points.map(point => (point.isJump ? "triangle" : "circle")),
                rotation: points.map(point => (point.ratio < 1 ? 180 : 0)),
                pointRadius: points.map(point => (point.isJump ? 8 : 4)),
                pointBackgroundColor: points.map(point => (point.isJump ? colour(point.ratio > 1 ? "slower" : "faster") : own)),
                pointBorderColor: points.map(point => (point.isJump ? colour("text") : own)),
            }],
        },
        options: {
            layout: {padding: {top: 18, right: 12}},
            scales: {
                x: {offset: true, ticks: {maxRotation: 0}},
                y: {min: Math.max(0, smallest(clocks) - room * 0.3), max: largest(clocks) + room * 0.3,
                    title: titleOf(title), ticks: {includeBounds: false, format: {useGrouping: false}}},
            },
            plugins: {tooltip: tooltipOf(item => [runText(points[item.dataIndex].run),
                `${figure(points[item.dataIndex].clocks)} ${title}`])},
        },
        plugins: [overlay((chart, ctx) => {
            drawBorders(points, chart, ctx);
            drawJumps(points, chart, ctx);
        })],
    };
}

const historyColumns = [
    numberColumn("run", "Run", whole, point => point.run + 1),
    textColumn("started", "Started", point => dayText(report.runs[point.run].started)),
    textColumn("file", "File", point => report.runs[point.run].file),
    textColumn("group", "Build and keys", point => report.groups[groupOfRun(point.run)]?.label ?? ""),
    numberColumn("clocks", "Clocks"),
    numberColumn("change", "Against the runs before", ratio => (ratio === null ? missing : change(ratio)),
        point => (point.ratio === 1 ? null : point.ratio)),
    textColumn("jump", "Jump", point => (point.isJump ? "yes" : "")),
];

function historyAnswer(points) {
    const jumps = points.filter(point => point.isJump);
    const clocks = points.map(point => point.clocks);
    const range = `From ${figure(smallest(clocks))} to ${figure(largest(clocks))} clocks over ${counted(points.length, "run")}`;
    return jumps.length === 0 ? `${range}, no jump.` :
        `${range}. ${jumps.length === 1 ? "A jump" : "Jumps"} at ${listed(jumps.slice(0, 6).map(point =>
            `${distinct([runName(point.run), point.name], name => name).join(", ")} (${change(point.ratio)})`))}.`;
}

function combinationName(measured) {
    return [measured.file, measured.length && lengthText(measured.length), measured.variant].filter(Boolean).join(", ");
}

// A history goes over builds; other machines and keys have their own.
const seriesOf = group => report.groups[group].series;
const runsOfSeries = series => sum(report.groups.filter(group => group.series === series).map(group => group.runs.length));

function showHistory() {
    const isThere = report.groups.some(group => runsOfSeries(group.series) > 1);
    showSection("history", isThere);
    if (!isThere) {
        return;
    }
    const series = seriesOf(shownGroup());
    const own = cases.filter(measured => measured.function === state.f && measured.isMeasured &&
        seriesOf(measured.group) === series);
    const combinations = groupBy(own, combinationName);
    const choices = [{value: "", text: "all, geometric mean"},
        ...[...combinations.keys()].filter(Boolean).map(name => ({value: name, text: name}))];
    fillChoices(byId("history-function"), functions.map(name => ({value: name, text: name})).sort((a, b) =>
        (a.value < b.value ? -1 : 1)), state.f);
    fillChoices(byId("history-case"), choices, combinations.has(state.c) ? state.c : "");
    byId("history-plot").hidden = own.length === 0;
    if (own.length === 0) {
        byId("history-answer").textContent = `${state.f} was measured in no run.`;
        return;
    }
    const points = historyPoints(combinations);
    const title = perText(own);
    const name = combinations.has(state.c) ? `${state.f}, ${state.c}` : state.f;
    byId("history-answer").textContent = historyAnswer(points);
    byId("history-note").textContent =
        "A triangle is a jump: by more than 2%, and than four times the usual step, off the median of up to five runs before. " +
        "The scale does not begin at 0." + (hasBorders(points) ? " A dotted line: from here on another build." : "") +
        (runsOfSeries(series) < report.runs.length ? " Runs of other machines or keys have a line of their own: choose them at the top." : "");
    historyPlot.show({
        title: `${name}: ${title}, run by run`, height: 300, label: `Line: ${name}, run by run. ${historyAnswer(points)}`,
        config: () => historyConfig(points, title),
        table: {caption: `${name}, run by run`, columns: historyColumns, rows: points},
    });
}

