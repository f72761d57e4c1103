// ---- Two builds, or two sets of keys: effects with their intervals, sorted ------------------------

const comparisonPlot = new Plot(byId("comparison-plot"));
const effectsTable = element("div");
byId("comparison-plot").append(effectsTable);

// Form and colour of a verdict; the form alone tells it, too.
const verdictSigns = {slower: "\u25b2", faster: "\u25bc", same: "\u25cf", open: "\u25cb"};
const verdictSign = verdict => verdictSigns[verdict] ?? "\u2715";
const verdictColour = verdict =>
    colour({slower: "slower", faster: "faster", same: "text"}[verdict] ?? "muted");

const caseName = one => short(one.function) + (one.parameters ? "  " + briefly(one.parameters) : "");
// "CodeLength=16384 CodeFile=bib" as "16K bib".
const briefly = parameters => parameters
    .replace(/\bCodeLength=(\d+)/, (_, length) => lengthText(Number(length)))
    .replace(/\bCodeFile=/, "");

const effectRows = 30; // of a plot; all of them are in the table

function drawMark(ctx, x, y, verdict) {
    const paint = verdictColour(verdict);
    ctx.fillStyle = ctx.strokeStyle = paint;
    ctx.lineWidth = 1.75;
    ctx.beginPath();
    if (verdict === "slower" || verdict === "faster") {
        const tip = verdict === "slower" ? -6 : 6;
        ctx.moveTo(x, y + tip);
        ctx.lineTo(x + 6, y - tip * 0.7);
        ctx.lineTo(x - 6, y - tip * 0.7);
        ctx.closePath();
        ctx.fill();
        return;
    }
    ctx.arc(x, y, 4, 0, 2 * Math.PI);
    if (verdict === "same") {
        ctx.fill();
    } else {
        ctx.fillStyle = colour("ground");
        ctx.fill();
        ctx.stroke();
    }
}

const percentOf = ratio => (ratio - 1) * 100;

function drawEffects(list, chart, ctx) {
    const {x, y} = chart.scales;
    const {left, right} = chart.chartArea;
    const inside = value => Math.min(Math.max(x.getPixelForValue(value), left), right);
    ctx.save();
    ctx.font = smallFont();
    ctx.textBaseline = "middle";
    ctx.lineWidth = 1.5;
    list.forEach((one, index) => {
        const at = y.getPixelForValue(index);
        ctx.strokeStyle = verdictColour(one.verdict);
        if (isNumber(one.low) || isNumber(one.high)) {
            const from = isNumber(one.low) ? inside(percentOf(one.low)) : left;
            const to = isNumber(one.high) ? inside(percentOf(one.high)) : right;
            drawWhisker(ctx, {x: from, y: at}, to);
        }
        drawMark(ctx, inside(percentOf(one.effect)), at, one.verdict);
        ctx.fillStyle = verdictColour(one.verdict);
        ctx.fillText(change(one.effect), right + 8, at);
    });
    ctx.restore();
}

// What is not told from nothing lies in the band.
function drawNoise(noise, chart, ctx) {
    const {x} = chart.scales;
    const {top, bottom} = chart.chartArea;
    ctx.save();
    if (isNumber(noise)) {
        const [from, to] = [-noise, noise].map(part => x.getPixelForValue(part * 100));
        ctx.fillStyle = colour("band");
        ctx.fillRect(from, top, to - from, bottom - top);
    }
    ctx.strokeStyle = colour("text");
    ctx.beginPath();
    ctx.moveTo(x.getPixelForValue(0), top);
    ctx.lineTo(x.getPixelForValue(0), bottom);
    ctx.stroke();
    ctx.restore();
}

// Wide intervals of undecided cases must not squeeze the effects together.
function effectRange(list, noise) {
    const effects = list.map(one => percentOf(one.effect));
    const decided = list.filter(one => one.verdict !== "open")
        .flatMap(one => [one.low, one.high]).filter(isNumber).map(percentOf);
    const ends = [...effects, ...decided, -100 * (noise ?? 0), 100 * (noise ?? 0), -1, 1];
    const width = largest(ends) - smallest(ends);
    return [smallest(ends) - width * 0.06, largest(ends) + width * 0.06];
}

function effectTip(one) {
    const interval = isNumber(one.low) && isNumber(one.high) ? ` (${change(one.low)} to ${change(one.high)})` : "";
    return [caseName(one), `${verdictSign(one.verdict)} ${one.verdict}: ${change(one.effect)}${interval}`,
        `${figure(one.base)} to ${figure(one.changed)} clocks`];
}

function effectsConfig(list, noise) {
    const [min, max] = effectRange(list, noise);
    return {
        type: "bar",
        data: {
            labels: list.map(caseName),
            // Transparent bars, so that pointing at a row finds it.
            datasets: [{data: list.map(one => percentOf(one.effect)), backgroundColor: "transparent"}],
        },
        options: {
            indexAxis: "y",
            layout: {padding: {top: isNarrow() ? 8 : 0, right: 62}},
            interaction: {mode: "y", intersect: false},
            scales: {
                x: {type: "linear", min, max, title: titleOf("change of the clocks in percent; right of 0 is slower"),
                    ticks: {callback: value => (value > 0 ? "+" : value < 0 ? "\u2212" : "") + tickText(Math.abs(value)), includeBounds: false}},
                y: nameAxis(list.map(caseName)),
            },
            plugins: {tooltip: tooltipOf(item => effectTip(list[item.dataIndex]))},
        },
        plugins: [underlay((chart, ctx) => drawNoise(noise, chart, ctx)),
            overlay((chart, ctx) => drawEffects(list, chart, ctx))],
    };
}

const effectColumns = [
    {...textColumn("verdict", "Verdict"), text: one => `${verdictSign(one.verdict)} ${one.verdict}`,
        className: one => one.verdict},
    textColumn("function", "Function"),
    textColumn("parameters", "Parameters", one => briefly(one.parameters)),
    numberColumn("effect", "Change", change),
    numberColumn("low", "From", change),
    numberColumn("high", "To", change),
    numberColumn("base", "Base clocks"),
    numberColumn("changed", "New clocks"),
];
const failureColumn = {...textColumn("failure", "Failure"), isLong: true};

function verdictCounts(list) {
    const counts = groupBy(list, one => one.verdict);
    const order = ["slower", "faster", "same", "open"];
    const names = [...counts.keys()].sort((a, b) => (order.indexOf(a) + 9) % 9 - (order.indexOf(b) + 9) % 9);
    return names.map(name => ({name, count: counts.get(name).length}));
}

function comparisonAnswer(shown) {
    const counts = verdictCounts(shown.cases).map(({name, count}) => `${whole(count)} ${verdictSign(name)} ${name}`);
    return `${listed(counts)}.${meanText(shown)}`;
}

// ntkcompare has more to tell the mean from than the effects: their passes.
function meanText({cases: list, ratio, low, high}) {
    const effects = list.map(one => one.effect).filter(isNumber);
    if (isNumber(ratio)) {
        const interval = isNumber(low) && isNumber(high) ? `, ${change(low)} to ${change(high)}` : "";
        return ` On the whole ${change(ratio)} (mean of ${counted(effects.length, "combination")}${interval}).`;
    }
    return effects.length ? ` On the whole ${change(geometricMean(effects))} (geometric mean).` : "";
}

function comparisonNote(shown) {
    const sign = Object.entries(verdictSigns).filter(([name]) => shown.isJudged || name !== "same")
        .map(([name, form]) => `${form} ${name}`).join(", ");
    const noise = isNumber(shown.noise)
        ? `The grey band is the noise floor, \u00b1${(shown.noise * 100).toFixed(2)}%: half of the intervals are narrower. ` : "";
    if (shown.isJudged) {
        return `${sign} (not to be told from these measurements). Lines are intervals of ${percent(shown.confidence)} confidence` +
            (shown.tolerance > 0 ? `; up to ${percent(shown.tolerance)} is tolerated. ` : ". ") + noise +
            (shown.complete ? "" : "This comparison was not complete.");
    }
    const [base, changed] = shown.runs;
    return `${sign} (not to be told from these runs). Lines go from the least to the most that the runs allow (${counted(base, "run")} against ${changed}); ` +
        "slower and faster are only those whose runs lie apart by more than the noise. " + noise +
        `${chanceText(base, changed)}ntkcompare measures two builds in turns and tells smaller changes.`;
}

// How often runs of two equal builds lie apart by mere chance.
function chanceText(base, changed) {
    if (base < 2 || changed < 2) {
        return "A single run says nothing of its noise. ";
    }
    let ways = 1;
    for (let i = 1; i <= base; ++i) {
        ways = ways * (changed + i) / i;
    }
    return `Runs of equal builds lie apart by chance in ${percent(2 / ways)} of the cases. `;
}

function showEffects(shown) {
    const list = shown.cases.filter(one => !state.verdict || one.verdict === state.verdict)
        .sort((a, b) => (b.effect ?? -1) - (a.effect ?? -1));
    const effects = list.filter(one => isNumber(one.effect));
    const drawn = mostTelling(effects);
    comparisonPlot.element.hidden = drawn.length === 0;
    effectsTable.replaceChildren();
    new DataTable(effectsTable, {caption: `Effects: ${shown.title}`, columns: list.some(one => one.failure) ? [...effectColumns, failureColumn] : effectColumns}).show(list);
    if (drawn.length > 0) {
        const cut = drawn.length < effects.length ? `, the ${drawn.length} most telling of ${whole(effects.length)}` : "";
        comparisonPlot.show({
            title: `Change of the clocks${cut}`,
            label: `Effects with their intervals: ${comparisonAnswer(shown)}`,
            height: drawn.length * (isNarrow() ? 32 : 22) + 60,
            config: () => effectsConfig(drawn, shown.noise),
        });
    }
}

// Decided ones first, then the largest, in the order of the effects.
function mostTelling(list) {
    const weight = one => (["slower", "faster"].includes(one.verdict) ? 1e6 : 0) + Math.abs(Math.log(one.effect));
    const chosen = new Set([...list].sort((a, b) => weight(b) - weight(a)).slice(0, effectRows));
    return list.filter(one => chosen.has(one));
}

function showComparison() {
    showSection("comparison", comparisonMakers.length > 0);
    if (comparisonMakers.length === 0) {
        return;
    }
    const index = Math.min(Math.max(0, Math.trunc(Number(state.cmp)) || 0), comparisonMakers.length - 1);
    const shown = comparison(index);
    fillChoices(byId("comparison-choice"),
        comparisonMakers.map((_, at) => ({value: String(at), text: comparison(at).title})), String(index));
    fillChoices(byId("verdict-choice"), [{value: "", text: "all"},
        ...verdictCounts(shown.cases).map(({name}) => ({value: name, text: `${verdictSign(name)} ${name}`}))],
        state.verdict);
    byId("comparison-answer").textContent = comparisonAnswer(shown);
    byId("comparison-note").textContent = comparisonNote(shown);
    byId("comparison-sides").textContent = `Base: ${shown.base}\nNew: ${shown.changed}`;
    showEffects(shown);
}

