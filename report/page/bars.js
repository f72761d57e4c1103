// ---- Clocks per byte: a bar a method, a plot a family, all on one scale ---------------------------

const familyPlots = new Map();

const barRow = () => (isNarrow() ? 34 : 21);
const perUnitMark = method => (method.isPerByte ? "" : ` (per ${method.unit || "unit"})`);

function barScale(methods) {
    const low = smallest(methods.map(method => Math.min(method.low, method.clocks)));
    const high = largest(methods.map(method => method.high));
    return [10 ** Math.floor(Math.log10(low)), 10 ** Math.ceil(Math.log10(high) + 1e-9)];
}

// Half of the way from the quickest to the slowest run.
function spreadText({low, high, clocks}) {
    const half = (high - low) / 2 / clocks;
    return half > 0 ? (spreadsWithin() ? "+" + percent(2 * half) : "\u00b1" + percent(half)) : "";
}

// Whiskers, and the figures behind each bar.
function drawBarMarks(methods, chart, ctx) {
    const {x} = chart.scales;
    ctx.save();
    ctx.font = smallFont();
    ctx.textBaseline = "middle";
    ctx.strokeStyle = colour("text");
    chart.getDatasetMeta(0).data.forEach((bar, index) => {
        const {low, high, clocks} = methods[index];
        const [from, to] = [x.getPixelForValue(low), x.getPixelForValue(high)];
        if (to - from > 1) {
            drawWhisker(ctx, {x: from, y: bar.y}, to);
        }
        const left = Math.max(bar.x, to) + 6;
        ctx.fillStyle = colour("text");
        ctx.fillText(figure(clocks), left, bar.y);
        const width = ctx.measureText(figure(clocks)).width;
        ctx.fillStyle = colour("muted");
        ctx.fillText(spreadText(methods[index]), left + width + 6, bar.y);
    });
    ctx.restore();
}

function barTip(method) {
    const spread = method.high / method.low - 1;
    const all = method.own.map(measured => measured.clocks);
    return [`${method.method}: ${figure(method.clocks)} clocks per ` +
        (method.isPerByte ? "byte" : method.unit || "unit"),
    ...(meaningOf(method) ? [meaningOf(method)] : []), `spread ${percent(spread)}`,
    `${counted(all.length, "measurement")}, ${figure(smallest(all))} to ${figure(largest(all))}`];
}

// On a phone names stand above the bars, not beside them.
function nameTicks() {
    const common = {autoSkip: false, font: {size: 12}, color: colour("text")};
    return isNarrow() ? {...common, mirror: true, labelOffset: -14, padding: 0} : common;
}

const barName = method => briefMethod(method) + perUnitMark(method);

// Without its middle where it is longer than there is room.
function fittingText(text, width, ctx) {
    for (let left = text.length - 1; left > 6 && ctx.measureText(text).width > width; --left) {
        const head = Math.ceil(left * 0.6);
        const cut = text.replace("\u2026", "");
        text = cut.slice(0, head) + "\u2026" + cut.slice(cut.length - (left - head));
    }
    return text;
}

// As wide as all of the names need, also those of the other plots, so that their scales stand below
// each other; on a phone they have no width of their own.
function nameAxis(names) {
    const ticks = nameTicks();
    const font = "12px " + Chart.defaults.font.family;
    let width = 0;
    ticks.callback = function (_, index) {
        this.ctx.font = font;
        const text = this.getLabelForValue(index);
        return isNarrow() ? text : fittingText(text, this.chart.width * 0.4 - 12, this.ctx);
    };
    return {grid: {display: false}, ticks, afterFit: axis => {
        axis.ctx.font = font;
        width ||= largest(names.map(name => axis.ctx.measureText(name).width)) + 12;
        axis.width = isNarrow() ? 0 : Math.min(width, axis.chart.width * 0.4);
    }};
}

function barConfig(methods, [low, high], names) {
    const xAxis = logarithmicAxis(low, high, "");
    xAxis.title = {display: false};
    return {
        type: "bar",
        data: {
            labels: methods.map(barName),
            datasets: [{
                data: methods.map(method => method.clocks),
                backgroundColor: methods.map(method => kindColour(method.kind)),
                barThickness: isNarrow() ? 9 : 12,
            }],
        },
        options: {
            indexAxis: "y",
            layout: {padding: {right: 88, top: isNarrow() ? 8 : 0}},
            scales: {x: xAxis, y: nameAxis(names)},
            plugins: {tooltip: tooltipOf(item => barTip(methods[item.dataIndex]))},
            onClick: (_, [bar]) => bar && choose({f: methods[bar.index].function, v: "", c: "", at: "lengths"}),
        },
        plugins: [overlay((chart, ctx) => drawBarMarks(methods, chart, ctx))],
    };
}

const methodColumns = [
    {...textColumn("method", "Method"), choose: row => choose({f: row.function, v: row.variant, c: "", at: "lengths"})},
    textColumn("family", "Family"),
    textColumn("kind", "Kind"),
    {...numberColumn("clocks", "Clocks"), text: row => figure(row.clocks)},
    textColumn("per", "per", row => (row.isPerByte ? "byte" : row.unit || "unit")),
    numberColumn("low", "From"),
    numberColumn("high", "To"),
    numberColumn("spread", "Spread", percent, row => row.high / row.low - 1),
    numberColumn("rows", "Measurements", whole, row => row.own.length),
];

// The functions of another library may have nothing in common in their names: not a plot for each.
const mostLonelyPlots = 3;

function familyPlotOf(methods) {
    const lonely = [...groupBy(methods, method => method.family).entries()]
        .filter(([, own]) => own.length === 1).map(([family]) => family);
    return ({family}) => (lonely.length > mostLonelyPlots && lonely.includes(family) ? "" : family) || "Others";
}

function showFamilies(methods) {
    const scale = methods.length ? barScale(methods) : [1, 10];
    familyPlots.forEach(plot => plot.remove());
    familyPlots.clear();
    const families = groupBy(methods, familyPlotOf(methods));
    for (const family of [...families.keys()].sort()) {
        const own = families.get(family);
        const plot = new Plot(byId("families"));
        familyPlots.set(family, plot);
        plot.show({
            title: family,
            label: `Bars: clocks of ${counted(own.length, "method")} of the family ${family}, slowest first, ` +
                `${own.map(method => `${briefMethod(method)} ${figure(method.clocks)}`).slice(0, 8).join(", ")}`,
            height: own.length * barRow() + (isNarrow() ? 40 : 33),
            config: () => barConfig(own, scale, methods.map(barName)),
        });
    }
}

function clocksAnswer(methods) {
    const compared = methods.filter(method => method.isPerByte);
    if (compared.length < 2) {
        return compared.length || methods.length
            ? "" : `Nothing was measured ${dataText()}.`;
    }
    const name = method => `${briefMethod(method)} (${figure(method.clocks)})`;
    const told = Math.min(3, Math.floor(compared.length / 2)); // none is both
    const text = `Slowest ${dataText()}: ${listed(compared.slice(0, told).map(name))}. ` +
        `Fastest: ${listed(compared.slice(-told).reverse().map(name))}.`;
    return text[0].toUpperCase() + text.slice(1);
}

function clocksNote(methods) {
    const spread = spreadsWithin()
        ? "the line is the spread within the run" : "the line goes from the quickest to the slowest run";
    return "Clocks per byte of uncompressed data on one logarithmic scale. A bar is the median over " +
        `${state.data === "" ? "files and lengths" : "the lengths"}; ${spread}. ` +
        (methods.some(method => !method.isPerByte)
            ? "What a unit stands for is not known of those marked \u201cper\u201d. " : "") +
        "Choose other data at the top, or a bar to see its function by length.";
}

// Of each file the slowest and the fastest method; for those who do not want to choose one by one.
const extremeColumns = [
    textColumn("file", "Data"),
    textColumn("slowest", "Slowest", row => row.methods[0].method),
    numberColumn("most", "Clocks per byte", figure, row => row.methods[0].clocks),
    textColumn("fastest", "Fastest", row => row.methods.at(-1).method),
    numberColumn("least", "Clocks per byte", figure, row => row.methods.at(-1).clocks),
];

function extremesByFile() {
    const compared = groupCases().filter(measured => measured.isMeasured && measured.isPerByte);
    return [...groupBy(compared, measured => measured.file)]
        .map(([file, own]) => ({file: file || "without a file", methods: methodFigures(own)}));
}

// A table that is made when it is asked for.
function addDetails(parent, summary, makeTable) {
    const details = element("details", {}, element("summary", {}, summary));
    details.addEventListener("toggle", () => {
        if (details.children.length === 1) {
            const {rows, ...table} = makeTable();
            new DataTable(details, table).show(rows);
        }
    });
    parent.append(details);
}

function showClocks() {
    const methods = methodFigures(measuredCases());
    byId("clocks-answer").textContent = clocksAnswer(methods);
    byId("clocks-note").textContent = clocksNote(methods);
    byId("clocks-names").textContent = namesText(methods) && `Short names: ${namesText(methods)}.`;
    showFamilies(methods);
    byId("clocks-table").replaceChildren();
    addDetails(byId("clocks-table"), "As a table", () => ({
        caption: `Clocks of each method ${dataText()}`, columns: methodColumns, sort: "-clocks", rows: methods}));
    if (files.length > 1) {
        addDetails(byId("clocks-table"), "Slowest and fastest for each file", () => ({
            caption: "Slowest and fastest for each file", columns: extremeColumns, sort: "file",
            rows: extremesByFile()}));
    }
}

