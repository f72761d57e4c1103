// ---- Plots: drawn when they come into sight, each with its data as a table ----------------------

Chart.defaults.animation = false;
Chart.defaults.maintainAspectRatio = false;
Chart.defaults.plugins.legend.display = false;

const plots = new Set();
const watcher = new IntersectionObserver(
    entries => entries.forEach(entry => plotOf.get(entry.target).seen(entry.isIntersecting)),
    {rootMargin: "300px"});
const plotOf = new WeakMap();

class Plot {
    constructor(parent) {
        this.title = element("h3");
        this.canvas = element("canvas", {"aria-label": "", role: "img"});
        this.holder = element("div", {className: "canvas"}, this.canvas);
        this.details = element("details", {}, element("summary", {}, "As a table"));
        this.element = element("figure", {}, element("figcaption", {}, this.title), this.holder,
            this.details);
        this.details.addEventListener("toggle", () => this.showTable());
        parent.append(this.element);
        plotOf.set(this.holder, this);
        plots.add(this);
        watcher.observe(this.holder);
    }

    // config() is asked when it is time to draw, so that it has the colours and the width of then.
    // table: {caption, columns, rows}; without one the caller shows the data elsewhere.
    show({title, label, height, config, table}) {
        Object.assign(this, {config, table, isDrawn: false});
        this.title.textContent = title;
        this.title.hidden = !title;
        this.canvas.setAttribute("aria-label", label);
        this.holder.style.height = height + "px";
        this.details.hidden = !table;
        this.shownTable?.remove();
        this.shownTable = null;
        this.showTable();
        this.drawIfSeen();
    }

    seen(isSeen) {
        this.isSeen = isSeen;
        this.drawIfSeen();
    }

    drawIfSeen() {
        if (this.config && (this.isSeen || isPrinting) && !this.isDrawn) {
            this.draw();
        }
    }

    draw() {
        this.chart?.destroy();
        this.chart = new Chart(this.canvas, this.config());
        this.isDrawn = true;
        if (performance.getEntriesByName("first picture").length === 0) {
            performance.mark("first picture");
        }
    }

    redraw() {
        this.isDrawn = false;
        this.drawIfSeen();
    }

    showTable() {
        if (this.table && this.details.open && !this.shownTable) {
            this.shownTable = element("div");
            this.details.append(this.shownTable);
            new DataTable(this.shownTable, this.table).show(this.table.rows);
        }
    }

    remove() {
        this.chart?.destroy();
        watcher.unobserve(this.holder);
        plots.delete(this);
        this.element.remove();
    }
}

const redrawPlots = () => plots.forEach(plot => plot.redraw());

// Drawn over the plot when all else is there.
const overlay = draw => ({id: "overlay", afterDatasetsDraw: chart => draw(chart, chart.ctx)});
const underlay = draw => ({id: "underlay", beforeDatasetsDraw: chart => draw(chart, chart.ctx)});

// Readable also where lines pass behind it.
function drawText(ctx, text, x, y) {
    ctx.save();
    ctx.strokeStyle = colour("ground");
    ctx.lineWidth = 3;
    ctx.lineJoin = "round";
    ctx.strokeText(text, x, y);
    ctx.restore();
    ctx.fillText(text, x, y);
}

const smallFont = () => "11px " + Chart.defaults.font.family;

// An interval as a line with a short bar at each end.
function drawWhisker(ctx, from, to, isUpright) {
    const along = (x, y) => (isUpright ? [y, x] : [x, y]);
    const bar = at => {
        ctx.moveTo(...along(at, from.y - 3));
        ctx.lineTo(...along(at, from.y + 3));
    };
    ctx.beginPath();
    ctx.moveTo(...along(from.x, from.y));
    ctx.lineTo(...along(to, from.y));
    bar(from.x);
    bar(to);
    ctx.stroke();
}

function powersOfTen(low, high) {
    const powers = [];
    for (let power = Math.floor(Math.log10(low)); power <= Math.ceil(Math.log10(high)); ++power) {
        powers.push(10 ** power);
    }
    return powers;
}

const titleOf = text => ({display: true, text, font: {size: 12}});

// Ticks at exactly these values.
const ticksAt = values => axis => { axis.ticks = values.map(value => ({value})); };

// A logarithmic axis that begins and ends where the data do; its ticks are 1, 2 and 5 of each power
// as far as there are few powers.
function logarithmicAxis(low, high, title) {
    const steps = high / low > (isNarrow() ? 30 : 300) ? [1] : [1, 2, 5];
    const ticks = powersOfTen(low, high).flatMap(power => steps.map(step => step * power));
    return {
        type: "logarithmic", min: low, max: high, title: titleOf(title),
        afterBuildTicks: ticksAt(ticks.filter(tick => tick >= low * 0.999 && tick <= high * 1.001)),
        ticks: {callback: tickText, maxRotation: 0},
    };
}
const tickText = value => String(Number(Number(value).toPrecision(3)));

const tooltipOf = lines => ({displayColors: false, callbacks: {title: () => "", label: lines}});

// Boxes on a plot that do not lie on each other: names beside points.
const box = (left, top, width, height) => ({left, top, right: left + width, bottom: top + height});
const overlap = (a, b) => a.left < b.right && b.left < a.right && a.top < b.bottom && b.top < a.bottom;

// How far a point is from a box.
const distance = ({x, y}, {left, top, right, bottom}) =>
    Math.hypot(Math.max(left - x, 0, x - right), Math.max(top - y, 0, y - bottom));

// A place that lies nearer to its own point than to the others, if there is one. Else what is
// important gets another, which needs a line to its point.
function freePlace(point, width, taken, room, {isImportant = false, others = []} = {}) {
    const {x, y} = point;
    const inside = left => Math.min(Math.max(left, room.left + 2), room.right - width);
    const places = [[x + 10, y - 7], [x - 10 - width, y - 7], [inside(x - width / 2), y - 22],
        [inside(x - width / 2), y + 8], [x + 8, y - 19], [x + 8, y + 5], [x - 8 - width, y - 19],
        [x - 8 - width, y + 5]];
    const further = [[inside(x - width / 2), y - 34], [inside(x - width / 2), y + 20]];
    const boxes = [...places, ...(isImportant ? further : [])]
        .map(([left, top]) => box(left, top, width, 14));
    const free = boxes.filter(place => place.left > room.left && place.right < room.right + 4 &&
        place.top > room.top - 4 && place.bottom < room.bottom && !taken.some(other => overlap(place, other)));
    const isOwn = place => others.every(other => other === point || distance(other, place) > distance(point, place));
    return free.find(isOwn) ?? (isImportant && free.length > 0 ? {...free[0], needsLine: true} : undefined);
}

