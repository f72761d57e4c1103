// ---- Speed against ratio: a point a method and file, the frontier marked ---------------------------

const encoderPlot = new Plot(byId("frontier-plots"));
const decoderPlot = new Plot(byId("frontier-plots"));

// Of all methods the same amount of each file: longer data compress better. The longest length that
// each of them was measured at, or what it has that is nearest below.
function sameLengths(list) {
    const chosen = [];
    for (const own of groupBy(list, measured => measured.file).values()) {
        const methods = [...groupBy(own, measured => measured.method).values()];
        const common = smallest(methods.map(one => largest(one.map(measured => measured.length))));
        for (const one of methods) {
            const sorted = [...one].sort((a, b) => a.length - b.length);
            chosen.push(sorted.filter(measured => measured.length <= common).at(-1) ?? sorted[0]);
        }
    }
    return chosen;
}

// Clocks and compressed bytes of the files add up; a method that lacks one cannot be compared.
function wholeMethods(points) {
    const count = distinct(points, measured => measured.file).length;
    return [...groupBy(points, measured => measured.method).values()]
        .filter(own => own.length === count)
        .map(own => {
            const bytes = sum(own.map(measured => measured.length));
            const clocks = sum(own.map(measured => measured.length * measured.clocks)) / bytes;
            const ratio = bytes / sum(own.map(measured => measured.length / measured.ratio));
            return {...own[0], clocks, ratio, points: own};
        });
}

function markFrontier(methods) {
    const isBeaten = (one, by) =>
        by.clocks <= one.clocks && by.ratio >= one.ratio && (by.clocks < one.clocks || by.ratio > one.ratio);
    methods.forEach(one => { one.isOnFrontier = !methods.some(by => isBeaten(one, by)); });
    return methods.sort((a, b) => a.clocks - b.clocks);
}

// Data from files, unless there are none of a method's kind; a field of numbers has another ratio.
function comparedCases(kind) {
    const list = groupCases().filter(measured => measured.kind === kind && measured.isMeasured &&
        measured.isPerByte && measured.ratio > 0 && measured.length > 0);
    const withFile = list.filter(measured => measured.file);
    return state.data === "-" || withFile.length === 0
        ? list.filter(measured => !measured.file)
        : withFile.filter(isChosenData);
}

function frontierData(kind) {
    const points = sameLengths(comparedCases(kind));
    return {points, methods: markFrontier(wholeMethods(points))};
}

const hasSpeed = () => ticksMHz(shownGroup()) !== null;
const speedOf = one => (hasSpeed() ? ticksMHz(shownGroup()) / one.clocks : 1 / one.clocks);
const speedTitle = () => (hasSpeed() ? "MB/s" : "bytes per clock");
const speedText = one => `${hasSpeed() ? whole(speedOf(one)) : figure(speedOf(one))} ${speedTitle()}`;

// Forms with their signs for the legend.
const familyForms = [
    {pointStyle: "circle", rotation: 0, sign: "\u25cf"}, {pointStyle: "rect", rotation: 0, sign: "\u25a0"},
    {pointStyle: "triangle", rotation: 0, sign: "\u25b2"}, {pointStyle: "rectRot", rotation: 0, sign: "\u25c6"},
    {pointStyle: "triangle", rotation: 180, sign: "\u25bc"}, {pointStyle: "triangle", rotation: 90, sign: "\u25b6"},
];

const ratioFamilies = distinct(cases.filter(measured => measured.ratio > 0), measured => measured.family).sort();

function familyStyle(family) {
    const index = ratioFamilies.indexOf(family);
    const colours = seriesColours();
    return {colour: colours[index % colours.length], ...familyForms[index % familyForms.length]};
}

function showFamilyLegend(methods) {
    const shown = ratioFamilies.filter(family => methods.some(one => one.family === family));
    byId("frontier-legend").replaceChildren(...shown.map(family => {
        const {colour: own, sign} = familyStyle(family);
        const mark = element("span", {"aria-hidden": "true"}, sign);
        mark.style.color = own;
        return element("span", {}, mark, family);
    }));
}

function pointsDataset(points) {
    return {
        data: points.map(one => ({x: speedOf(one), y: one.ratio, one})),
        pointRadius: 2, pointHoverRadius: 4, borderWidth: 0, order: 2,
        pointBackgroundColor: points.map(one => familyStyle(one.family).colour + "59"),
    };
}

function methodsDataset(methods) {
    return {
        data: methods.map(one => ({x: speedOf(one), y: one.ratio, one})),
        pointStyle: methods.map(one => familyStyle(one.family).pointStyle),
        rotation: methods.map(one => familyStyle(one.family).rotation),
        pointRadius: methods.map(one => (one.isOnFrontier ? 7 : 5)),
        pointHoverRadius: 8, borderWidth: 1.5, order: 1,
        pointBorderColor: methods.map(one => (one.isOnFrontier ? colour("text") : familyStyle(one.family).colour)),
        pointBackgroundColor: methods.map(one => familyStyle(one.family).colour),
    };
}

function frontierDataset(methods) {
    return {
        type: "line", order: 3, pointRadius: 0, borderWidth: 1.5, borderDash: [6, 4],
        borderColor: colour("muted"), stepped: "before",
        data: methods.filter(one => one.isOnFrontier).map(one => ({x: speedOf(one), y: one.ratio})),
    };
}

// Where the dashed line goes: level from a method to the speed of the next one, then up to it.
function frontierBoxes(chart) {
    const index = chart.data.datasets.findIndex(dataset => dataset.type === "line");
    const points = index < 0 ? [] : chart.getDatasetMeta(index).data;
    return points.slice(1).flatMap((to, before) => {
        const from = points[before];
        return [box(to.x, from.y - 2, from.x - to.x, 4), box(to.x - 2, to.y, 4, from.y - to.y)];
    });
}

function drawLineTo({x, y}, place, ctx) {
    if (place.needsLine) {
        ctx.strokeStyle = colour("text");
        ctx.beginPath();
        ctx.moveTo(Math.min(Math.max(x, place.left), place.right), y < place.top ? place.top + 1 : place.bottom - 1);
        ctx.lineTo(x, y);
        ctx.stroke();
    }
}

// As many names as find a place, those on the frontier first.
function drawMethodNames(methods, chart, ctx) {
    const others = chart.getDatasetMeta(0).data;
    const taken = others.map(point => box(point.x - 5, point.y - 5, 10, 10));
    taken.push(...frontierBoxes(chart));
    const room = chart.chartArea;
    ctx.save();
    ctx.textBaseline = "middle";
    const inOrder = methods.map((one, index) => ({one, point: chart.getDatasetMeta(0).data[index]}))
        .sort((a, b) => b.one.isOnFrontier - a.one.isOnFrontier);
    for (const {one, point} of inOrder) {
        ctx.font = (one.isOnFrontier ? "600 " : "") + smallFont();
        const text = briefMethod(one);
        const width = ctx.measureText(text).width;
        const place = freePlace(point, width, taken, room, {isImportant: one.isOnFrontier, others});
        if (place) {
            drawLineTo(point, place, ctx);
            ctx.fillStyle = colour(one.isOnFrontier ? "text" : "muted");
            drawText(ctx, text, place.left, place.top + 7);
            taken.push(place);
        }
    }
    ctx.restore();
}

function ratioTip({raw: {one}}) {
    const where = one.points ? "" : ` with ${one.file || "its data"}, ${lengthText(one.length)} bytes`;
    return [`${one.method}${where}`, ...(meaningOf(one) ? [meaningOf(one)] : []), `${whole(speedOf(one))} ${speedTitle()}, ratio ${figure(one.ratio)}`];
}

// Logarithmic, or a file that hardly can be compressed less would press all others together.
function ratioAxis(ratios) {
    const [low, high] = [smallest(ratios) / 1.08, largest(ratios) * 1.15];
    const steps = high / low > 3 ? [1, 1.5, 2, 3, 5, 7] : [1, 1.2, 1.4, 1.7, 2, 2.4, 3, 3.5, 4, 4.5, 5, 5.5, 6, 7, 8, 9];
    const ticks = powersOfTen(low, high).flatMap(power => steps.map(step => step * power));
    return {...logarithmicAxis(low, high, "ratio, logarithmic"),
        afterBuildTicks: ticksAt(ticks.filter(tick => tick >= low && tick <= high))};
}

function frontierConfig({points, methods}, isMarked) {
    const shown = state.data === "" && files.length > 1 ? [...points, ...methods] : methods;
    const speeds = shown.map(speedOf);
    const datasets = [methodsDataset(methods)];
    if (shown !== methods) {
        datasets.push(pointsDataset(points));
    }
    if (isMarked) {
        datasets.push(frontierDataset(methods));
    }
    return {
        type: "scatter", data: {datasets},
        options: {
            layout: {padding: {top: 8, right: 8}},
            scales: {
                x: logarithmicAxis(smallest(speeds) / 1.25, largest(speeds) * 1.25, `speed in ${speedTitle()}, logarithmic`),
                y: ratioAxis(shown.map(one => one.ratio)),
            },
            plugins: {tooltip: {filter: item => Boolean(item.raw.one), ...tooltipOf(ratioTip)}},
        },
        plugins: [overlay((chart, ctx) => drawMethodNames(methods, chart, ctx))],
    };
}

function frontierTable(data, title, isMarked) {
    const columns = [
        textColumn("method", "Method"), textColumn("family", "Family"),
        numberColumn("speed", speedTitle(), hasSpeed() ? whole : figure, speedOf),
        numberColumn("clocks", "Clocks per byte"), numberColumn("ratio", "Ratio"),
        textColumn("data", "Data", one => (one.points?.length > 1 ? "all" : one.file)),
    ];
    if (isMarked) {
        columns.push(textColumn("frontier", "Frontier", one => (one.isOnFrontier ? "yes" : "")));
    }
    const single = state.data === "" && files.length > 1 ? data.points : [];
    return {caption: title, columns, rows: [...data.methods, ...single]};
}

function showRatioPlot(plot, kind, data, isMarked) {
    plot.element.hidden = data.methods.length === 0;
    if (data.methods.length === 0) {
        return;
    }
    const title = `${kind}s ${dataText()}: speed against ratio`;
    plot.show({
        title: title[0].toUpperCase() + title.slice(1), height: isNarrow() ? 340 : 420,
        label: `Points: ${title}. ` + (isMarked ? frontierText(data.methods) : ""),
        config: () => frontierConfig(data, isMarked), table: frontierTable(data, title, isMarked),
    });
}

// Of these the second half of the data is what is encoded; the first half is the dictionary.
const hasDictionary = one => /LZ4Dict/.test(one.function) || meaningOf(one).includes("is the dictionary");

const frontierName = one =>
    `${briefMethod(one)} (${speedText(one)}, ratio ${figure(one.ratio)})`;

function frontierText(methods) {
    const best = methods.filter(one => one.isOnFrontier);
    return best.length === 0 ? "" :
        `On the frontier ${dataText()} ${best.length > 1 ? "are" : "is"} ${listed(best.map(frontierName))}: ` +
        "no other encoder is both faster and smaller.";
}

function showFrontier() {
    const encoders = frontierData("encoder");
    const decoders = frontierData("decoder");
    const isThere = ["encoder", "decoder"].some(kind => cases.some(one => one.kind === kind && one.ratio > 0));
    showSection("frontier", isThere);
    byId("frontier-answer").textContent = frontierText(encoders.methods) ||
        `No encoder was measured with its ratio ${dataText()}.`;
    showFamilyLegend([...encoders.methods, ...decoders.methods]);
    const left = distinct(comparedCases("encoder"), one => one.method).length - encoders.methods.length;
    byId("frontier-note").textContent =
        "Up and to the right is better. " + (state.data === "" && files.length > 1
            ? "A large mark is a method over all files together, a small point one file. " : "") +
        "All methods at the same length of a file, the longest that each of them was measured at. " +
        "Forms and colours are families; the dashed line is the frontier." +
        (encoders.methods.some(hasDictionary)
            ? " LZ4Dict, and LZ4HC with a dictionary, encode the second half of the data: the first is the dictionary." : "") +
        (left > 0 ? ` Left out: ${counted(left, "method")} that lack some of the files.` : "");
    showRatioPlot(encoderPlot, "encoder", encoders, true);
    showRatioPlot(decoderPlot, "decoder", decoders, false);
}

