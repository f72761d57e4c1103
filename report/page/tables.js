// ---- Tables that sort, a page at a time: of 20,000 rows only those in sight are elements ---------

const pageRows = 50;

function compareCells(a, b) {
    const isMissing = value => value === null || value === undefined || value === "";
    if (isMissing(a) || isMissing(b)) {
        return isMissing(a) - isMissing(b); // last in ascending order
    }
    return typeof a === "number" ? a - b : String(a).localeCompare(String(b), "en", {numeric: true});
}

class DataTable {
    // columns: [{name, title, value(row), text(row), isNumber, isLong, choose(row)}]; text is the
    // value unless there is one. sort: a column's name, with '-' before it for descending order.
    constructor(parent, {caption, columns, sort = "", page = 1, changed = () => {}}) {
        Object.assign(this, {columns, sort, page, changed});
        this.caption = element("caption", {}, caption);
        this.head = element("tr");
        this.body = element("tbody");
        this.pager = element("div", {className: "pager"});
        const table = element("table", {}, this.caption, element("thead", {}, this.head), this.body);
        const scroll = element("div", {className: "scroll", tabIndex: 0, role: "region"}, table);
        scroll.setAttribute("aria-label", caption);
        parent.append(scroll, this.pager);
    }

    show(rows) {
        this.rows = rows;
        this.draw();
    }

    sorted() {
        const name = this.sort.replace(/^-/, "");
        const column = this.columns.find(candidate => candidate.name === name);
        if (!column) {
            return this.rows;
        }
        const direction = this.sort.startsWith("-") ? -1 : 1;
        const keyed = this.rows.map(row => ({row, value: column.value(row)}));
        keyed.sort((a, b) => direction * compareCells(a.value, b.value));
        return keyed.map(({row}) => row);
    }

    draw() {
        const pages = Math.max(1, Math.ceil(this.rows.length / pageRows));
        this.page = Math.min(Math.max(1, this.page), pages);
        const first = (this.page - 1) * pageRows;
        const shown = this.sorted().slice(first, first + pageRows);
        this.head.replaceChildren(...this.columns.map(column => this.headCell(column)));
        this.body.replaceChildren(...shown.map(row => this.rowElement(row)));
        this.drawPager(pages, first, shown.length);
    }

    headCell(column) {
        const isSorted = this.sort.replace(/^-/, "") === column.name;
        const isDown = this.sort.startsWith("-");
        const sign = element("span", {className: "sign", "aria-hidden": "true"},
            isSorted ? (isDown ? "\u25be" : "\u25b4") : "");
        const button = element("button", {type: "button"}, column.title, sign);
        button.addEventListener("click", () => this.sortBy(column, isSorted && !isDown));
        const cell = element("th", {scope: "col", className: column.isNumber ? "number" : ""}, button);
        cell.setAttribute("aria-sort", !isSorted ? "none" : isDown ? "descending" : "ascending");
        return cell;
    }

    rowElement(row) {
        return element("tr", {}, ...this.columns.map(column => {
            const text = column.text ? column.text(row) : column.value(row);
            const cell = element("td", {className: cellClass(column, row)});
            cell.append(column.choose && text ? this.chooser(column, row, text) : text ?? "");
            return cell;
        }));
    }

    chooser(column, row, text) {
        const button = element("button", {type: "button"}, text);
        button.addEventListener("click", () => column.choose(row));
        return button;
    }

    sortBy(column, isDescending) {
        this.move({sort: (isDescending ? "-" : "") + column.name, page: 1});
        this.head.children[this.columns.indexOf(column)].firstChild.focus();
    }

    move(changes) {
        Object.assign(this, changes);
        this.draw();
        this.changed(this);
    }

    drawPager(pages, first, count) {
        const total = this.rows.length;
        const button = (text, page) => {
            const made = element("button", {type: "button", disabled: page < 1 || page > pages}, text);
            made.addEventListener("click", () => this.move({page}));
            return made;
        };
        this.pager.hidden = pages === 1;
        this.pager.replaceChildren(button("Previous", this.page - 1),
            `${whole(first + 1)} to ${whole(first + count)} of ${whole(total)}`,
            button("Next", this.page + 1));
    }
}

function cellClass(column, row) {
    const own = column.className ? column.className(row) : "";
    return [column.isNumber ? "number" : "", column.isLong ? "long" : "", own].join(" ").trim();
}

const textColumn = (name, title, value = row => row[name]) => ({name, title, value});
const numberColumn = (name, title, text = figure, value = row => row[name]) =>
    ({name, title, value, text: row => text(value(row)), isNumber: true});

