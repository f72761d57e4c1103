// ---- Every row -------------------------------------------------------------------------------------

const rowColumns = [
    {...textColumn("function", "Function"), text: row => (isNarrow() ? short(row.function) : row.function),
        choose: row => choose({f: row.function, v: row.variant, c: "", at: "lengths"})},
    textColumn("file", "File"),
    numberColumn("length", "Length", whole),
    numberColumn("clocks", "Clocks"),
    textColumn("per", "per", row => (row.isPerByte ? "byte" : row.unit || "unit")),
    {...textColumn("variant", "Variant"), text: briefVariant},
    numberColumn("ratio", "Ratio"),
    numberColumn("low", "From"),
    numberColumn("high", "To"),
    numberColumn("spread", "Spread", percent),
    numberColumn("speed", "MB/s", whole),
    numberColumn("runs", "Runs", whole, row => row.samples.length),
    textColumn("result", "Result"),
];
// How often something was called says nothing to a reader.
const saidText = row => row.comment.replace(/\b(nLps|nCalls)=\d+ ?/g, "");
const commentColumn = textColumn("comment", "Comment", saidText);
const groupColumn = textColumn("group", "Build and keys", row => report.groups[row.group].label);

const rowsTable = new DataTable(byId("rows-table"), {
    caption: "", columns: [...rowColumns, ...(cases.some(saidText) ? [commentColumn] : []), ...(report.groups.length > 1 ? [groupColumn] : [])],
    changed: table => choose({sort: table.sort, page: String(table.page)}),
});

// Each word of the filter has to be somewhere in the row.
function searchText(row) {
    row.searched ??= [row.function, row.family, row.file, row.length, row.variant, row.result, row.comment,
        report.groups[row.group].label].join(" ").toLowerCase();
    return row.searched;
}

function filteredRows() {
    const words = state.q.toLowerCase().split(/\s+/).filter(Boolean);
    return cases.filter(row => (!state.result || row.result === state.result) &&
        words.every(word => searchText(row).includes(word)));
}

function showRows() {
    const rows = filteredRows();
    rowsTable.sort = state.sort;
    rowsTable.page = Math.trunc(Number(state.page)) || 1;
    rowsTable.caption.textContent = rows.length === cases.length
        ? counted(rows.length, "row") : `${whole(rows.length)} of ${counted(cases.length, "row")}`;
    rowsTable.show(rows);
}

function setUpRows() {
    const filter = byId("rows-filter");
    const results = byId("rows-result");
    showSection("rows", cases.length > 0);
    fillChoices(results, [{value: "", text: "all"},
        ...distinct(cases, row => row.result).sort().map(value => ({value, text: value}))], state.result);
    filter.value = state.q;
    filter.addEventListener("input", () => choose({q: filter.value, page: "1"}));
    results.addEventListener("change", () => choose({result: results.value, page: "1"}));
}

