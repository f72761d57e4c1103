// ---- A function: clocks over length, a line a file --------------------------------------------------

const lengthsPlot = new Plot(byId("lengths-plot"));

const functionCases = () =>
    groupCases().filter(measured => measured.function === state.f && measured.isMeasured);
const variantsOf = list => distinct(list, measured => measured.variant);

function chosenVariant(list) {
    const variants = variantsOf(list);
    return variants.includes(state.v) ? state.v : variants[0] ?? "";
}

// [{name, points}], points by length.
function linesByFile(list) {
    return [...groupBy(list, measured => measured.file)]
        .map(([file, own]) => ({
            name: file || "data without a file",
            points: own.filter(measured => measured.length > 0).sort((a, b) => a.length - b.length),
        }))
        .filter(line => line.points.length > 0)
        .sort((a, b) => (a.name < b.name ? -1 : 1));
}

const allPoints = lines => lines.flatMap(line => line.points);

// Names of lines that end at the right stand beside them, moved apart where they would lie on each
// other.
function drawNamesBeside(ends, room, ctx) {
    const step = 12;
    ends.sort((a, b) => a.y - b.y);
    let above = room.top - step;
    ends.forEach(end => { end.at = above = Math.max(end.y, above + step); });
    let below = room.bottom + step;
    ends.reverse().forEach(end => { end.at = below = Math.min(end.at, below - step); });
    for (const end of ends) {
        ctx.strokeStyle = ctx.fillStyle = end.colour;
        ctx.globalAlpha = 0.5;
        ctx.beginPath();
        ctx.moveTo(end.x + 4, end.y);
        ctx.lineTo(room.right + 12, end.at);
        ctx.stroke();
        ctx.globalAlpha = 1;
        ctx.fillText(end.text, room.right + 15, end.at);
    }
}

function lineEnds(lines, chart) {
    return lines.map((line, index) => {
        const end = chart.getDatasetMeta(index).data.at(-1);
        const {isFaint, borderColor} = chart.data.datasets[index];
        return {text: line.name, x: end.x, y: end.y, isFaint, colour: isFaint ? colour("muted") : borderColor};
    });
}

// Those of lines that end before have their place near the end, if there is one.
function drawLineNames(lines, chart, ctx) {
    const room = chart.chartArea;
    const taken = lines.flatMap((_, index) =>
        chart.getDatasetMeta(index).data.map(({x, y}) => box(x - 4, y - 4, 8, 8)));
    ctx.save();
    ctx.font = smallFont();
    ctx.textBaseline = "middle";
    const named = lineEnds(lines, chart).filter(end => !(end.isFaint && isNarrow()));
    const beside = named.filter(end => {
        const isEarly = end.x < room.right - 60;
        const place = isEarly && freePlace(end, ctx.measureText(end.text).width, taken, room);
        if (place) {
            ctx.fillStyle = end.colour;
            drawText(ctx, end.text, place.left, place.top + 7);
            taken.push(place);
        }
        return !place;
    });
    drawNamesBeside(beside, room, ctx);
    ctx.restore();
}

function drawPointSpreads(lines, chart, ctx) {
    const {y} = chart.scales;
    ctx.save();
    lines.forEach((line, index) => {
        ctx.strokeStyle = chart.data.datasets[index].borderColor;
        chart.getDatasetMeta(index).data.forEach((point, at) => {
            const [from, to] = [line.points[at].low, line.points[at].high].map(v => y.getPixelForValue(v));
            if (from - to > 2) {
                drawWhisker(ctx, {x: from, y: point.x}, to, true);
            }
        });
    });
    ctx.restore();
}

function lineDatasets(lines) {
    const colours = seriesColours();
    const isOneChosen = lines.some(line => line.name === state.data);
    return lines.map((line, index) => {
        const isFaint = isOneChosen && line.name !== state.data;
        const own = isFaint ? colour("muted") + "55" : colours[index % colours.length];
        return {
            data: line.points.map(measured => ({x: measured.length, y: measured.clocks})),
            borderColor: own, backgroundColor: own, isFaint,
            borderWidth: line.name === state.data ? 3 : 1.75,
            borderDash: index >= colours.length ? [5, 3] : [],
            pointRadius: line.points.length > 40 ? 1 : 3,
            order: isFaint ? 1 : 0,
        };
    });
}

// Where there is no room for names beside the lines, they stand below, each to choose its file by.
const hasFileLegend = lines => isNarrow() && lines.length > 5;

function showFileLegend(lines) {
    const datasets = lineDatasets(lines);
    byId("lengths-files").replaceChildren(...(hasFileLegend(lines) ? lines.map((line, index) => {
        const mark = element("i", {className: "line"});
        mark.style.borderTopColor = datasets[index].borderColor;
        mark.style.borderTopStyle = datasets[index].borderDash.length ? "dashed" : "solid";
        const isChosen = line.name === state.data;
        const button = element("button", {type: "button", "aria-pressed": String(isChosen)}, mark, line.name);
        button.addEventListener("click", () => choose({data: isChosen || !files.includes(line.name) ? "" : line.name}));
        return button;
    }) : []));
}

// At lengths that several files have, as far apart as their texts need.
function lengthTicks(points) {
    const byLength = groupBy(points, measured => measured.length);
    const all = [...byLength.keys()].sort(ascending);
    const common = all.filter(length => byLength.get(length).length > 1);
    const ticks = [];
    for (const length of common.length > 1 ? common : all) {
        if (ticks.length === 0 || length / ticks.at(-1) > (isNarrow() ? 1.9 : 1.35)) {
            ticks.push(length);
        }
    }
    return ticks;
}

function clocksAxis(points, title) {
    const low = smallest(points.map(measured => measured.clocks));
    const high = largest(points.map(measured => measured.high));
    if (high > 50 * low) {
        return logarithmicAxis(low / 1.3, high * 1.3, title + ", logarithmic");
    }
    return {type: "linear", min: 0, suggestedMax: high * 1.05, title: titleOf(title),
        ticks: {callback: tickText}};
}

function lengthAxis(points) {
    const lengths = points.map(measured => measured.length);
    return {
        type: "logarithmic", min: smallest(lengths) / 1.1, max: largest(lengths) * 1.1,
        title: titleOf("length of the data in bytes, logarithmic"),
        afterBuildTicks: ticksAt(lengthTicks(points)),
        ticks: {callback: value => lengthText(value), maxRotation: 0},
    };
}

const perText = list => (list[0]?.isPerByte ? "clocks per byte" : `clocks per ${list[0]?.unit || "unit"}`);

function pointTip(measured) {
    return [`${measured.file || measured.function}, ${whole(measured.length)} bytes`,
        `${figure(measured.clocks)} clocks, ${figure(measured.low)} to ${figure(measured.high)}` +
        (isNumber(measured.spread) ? `, spread ${percent(measured.spread)}` : "")];
}

function lengthsConfig(lines) {
    const points = allPoints(lines);
    const longest = largest(lines.map(line => line.name.length));
    const isNamed = lines.length > 1 && lines.length <= 28 && !hasFileLegend(lines);
    return {
        type: "line",
        data: {datasets: lineDatasets(lines)},
        options: {
            layout: {padding: {right: isNamed ? Math.min(160, 24 + longest * 7) : 8}},
            interaction: {mode: "nearest", intersect: false},
            scales: {x: lengthAxis(points), y: clocksAxis(points, perText(points))},
            plugins: {tooltip: tooltipOf(item => pointTip(lines[item.datasetIndex].points[item.dataIndex]))},
        },
        plugins: [overlay((chart, ctx) => {
            drawPointSpreads(lines, chart, ctx);
            if (isNamed) {
                drawLineNames(lines, chart, ctx);
            }
        })],
    };
}

// A row a file, a column a length that several files have; the last column is for the rest.
function lengthsTable(lines, title) {
    const byLength = groupBy(allPoints(lines), measured => measured.length);
    const common = [...byLength.keys()].sort(ascending)
        .filter(length => lines.length === 1 || byLength.get(length).length > 1);
    const at = (line, length) => line.points.find(measured => measured.length === length);
    const rest = line => line.points.filter(measured => !common.includes(measured.length)).at(-1);
    const columns = [textColumn("name", "Data")];
    for (const length of common) {
        columns.push(numberColumn(String(length), lengthText(length), figure,
            line => at(line, length)?.clocks ?? null));
    }
    if (lines.some(rest)) {
        columns.push({...numberColumn("rest", "Whole file (bytes)"), value: line => rest(line)?.clocks ?? null,
            text: line => (rest(line) ? `${figure(rest(line).clocks)} (${whole(rest(line).length)})` : missing)});
    }
    columns.push(numberColumn("spread", "Largest spread", percent,
        line => largest(line.points.map(measured => measured.spread ?? 0))));
    return {caption: title, columns, rows: lines};
}

// How the clocks of the longest data differ from those of the shortest, over the files.
function lengthsAnswer(lines) {
    const changes = lines.filter(line => line.points.length > 1)
        .map(line => line.points.at(-1).clocks / line.points[0].clocks);
    if (changes.length === 0) {
        return "";
    }
    const middle = median(changes);
    const points = allPoints(lines);
    const [from, to] = [smallest, largest].map(pick => lengthText(pick(points.map(one => one.length))));
    const text = Math.abs(middle - 1) < 0.03
        ? "costs nearly the same" : `costs ${percent(Math.abs(middle - 1))} ${middle > 1 ? "more" : "less"}`;
    const who = changes.length > 1 ? " (median of the files)" : "";
    return `A byte of the longest data ${text} than a byte of the shortest${who}; lengths from ${from} to ${to} bytes.`
        .replace("nearly the same than", "nearly the same as");
}

function slowestFileText(lines) {
    if (lines.length < 2) {
        return "";
    }
    const means = lines.map(line => ({name: line.name, clocks: median(line.points.map(one => one.clocks))}))
        .sort((a, b) => b.clocks - a.clocks);
    return ` Slowest with ${means[0].name} (${figure(means[0].clocks)}), ` +
        `fastest with ${means.at(-1).name} (${figure(means.at(-1).clocks)}).`;
}

function chosenFileText(lines) {
    const chosen = lines.find(line => line.name === state.data);
    const tell = ({clocks, length}) => `${figure(clocks)} at ${lengthText(length)}`;
    return chosen && chosen.points.length > 1
        ? ` With ${chosen.name}: ${tell(chosen.points[0])}, ${tell(chosen.points.at(-1))}.` : "";
}

function functionChoices() {
    return distinct(groupCases(), measured => measured.function).sort()
        .map(name => ({value: name, text: name, group: familyOf.get(name)}))
        .sort((a, b) => (a.group < b.group ? -1 : a.group > b.group ? 1 : 0));
}

function variantName(variant) {
    const meaning = meaningOf({function: state.f, variant});
    return meaning ? `${variant} (${meaning})` : variant || "none";
}

function showLengths() {
    const list = functionCases();
    const variants = variantsOf(list);
    const variant = chosenVariant(list);
    const lines = linesByFile(list.filter(measured => measured.variant === variant));
    fillChoices(byId("function-choice"), functionChoices(), state.f);
    fillChoices(byId("variant-choice"), variants.map(value => ({value, text: variantName(value)})), variant);
    byId("variant-control").hidden = variants.length < 2;
    byId("lengths-plot").hidden = lines.length === 0;
    if (lines.length === 0) {
        showFileLegend([]);
        byId("lengths-answer").textContent = `Nothing of ${state.f} was measured for a known length.`;
        return;
    }
    showFileLegend(lines);
    const title = `${state.f}${variant ? ", " + variant : ""}: ${perText(allPoints(lines))} over length`;
    byId("lengths-answer").textContent = lengthsAnswer(lines) + slowestFileText(lines) + chosenFileText(lines);
    lengthsPlot.show({
        title, height: isNarrow() ? 340 : 420,
        label: `Lines: ${title}, a line for each of ${counted(lines.length, "file")}. ${lengthsAnswer(lines)}`,
        config: () => lengthsConfig(lines), table: lengthsTable(lines, title),
    });
}

