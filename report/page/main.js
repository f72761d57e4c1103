// ---- The page --------------------------------------------------------------------------------------

function showSection(id, isShown) {
    byId(id).hidden = !isShown;
    document.querySelector(`nav a[href="#at=${id}"]`).hidden = !isShown;
}

// What has to be shown anew when these have changed.
const views = [
    {keys: ["data", "group"], show: showCards},
    {keys: ["data", "group"], show: showClocksIfAny},
    {keys: ["data", "group", "f", "v", "theme"], show: () => cases.length > 0 && showLengths()},
    {keys: ["data", "group", "theme"], show: showFrontier}, // its legend has colours
    {keys: ["cmp", "verdict"], show: showComparison},
    {keys: ["f", "c", "group"], show: showHistory},
    {keys: ["q", "result", "sort", "page"], show: showRows},
];

function showClocksIfAny() {
    showSection("clocks", cases.length > 0);
    showSection("lengths", cases.length > 0);
    if (cases.length > 0) {
        showClocks();
    }
}

function showChanged(changed) {
    if (changed.has("theme")) {
        applyTheme();
        redrawPlots();
    }
    views.filter(view => view.keys.some(key => changed.has(key))).forEach(view => view.show());
    byId("data-choice").value = state.data;
    byId("group-choice").value = state.group;
    if (document.activeElement !== byId("rows-filter")) {
        byId("rows-filter").value = state.q;
    }
    byId("rows-result").value = state.result;
    if (changed.has("at")) {
        goTo(state.at);
    }
}

function goTo(id) {
    const section = id && byId(id);
    if (section?.tagName !== "SECTION") {
        return;
    }
    section.scrollIntoView();
    section.querySelector("h1, h2")?.focus({preventScroll: true});
    document.querySelectorAll("nav a").forEach(link =>
        (link.hash === `#at=${id}` ? link.setAttribute("aria-current", "true") : link.removeAttribute("aria-current")));
}

// A link to a section keeps all other choices in the address.
function followLinks() {
    document.addEventListener("click", event => {
        const id = event.target.closest?.("a[href^='#at=']")?.hash.slice("#at=".length);
        if (id) {
            event.preventDefault();
            choose({at: id});
            goTo(id);
        }
    });
}

function setUpChoices() {
    const data = [{value: "", text: "all"}, ...files.map(name => ({value: name, text: name}))];
    if (files.length > 0 && cases.some(measured => !measured.file)) {
        data.push({value: "-", text: "without a file"});
    }
    fillChoices(byId("data-choice"), data, state.data);
    fillChoices(byId("group-choice"),
        report.groups.map((group, index) => ({value: String(index), text: group.label || "all"})), state.group);
    byId("data-control").hidden = data.length < 2;
    byId("group-control").hidden = report.groups.length < 2;
    for (const [id, values] of [
        ["data-choice", data => ({data})], ["group-choice", group => ({group})],
        ["function-choice", f => ({f, v: "", c: ""})], ["variant-choice", v => ({v})],
        ["comparison-choice", cmp => ({cmp, verdict: ""})], ["verdict-choice", verdict => ({verdict})],
        ["history-function", f => ({f, v: "", c: ""})], ["history-case", c => ({c})],
    ]) {
        byId(id).addEventListener("change", event => choose(values(event.target.value)));
    }
}

function followTheme() {
    byId("theme").addEventListener("click", () => choose({theme: isDark() ? "light" : "dark"}));
    systemIsDark.addEventListener("change", () => showChanged(new Set(["theme"])));
    const print = isStarting => () => {
        isPrinting = isStarting;
        showChanged(new Set(["theme"]));
    };
    window.addEventListener("beforeprint", print(true));
    window.addEventListener("afterprint", print(false));
}

// Names stand beside or above bars by the width.
function followWidth() {
    narrow.addEventListener("change", () => showChanged(new Set(["data", "cmp", "q"])));
}

readAddress();
applyTheme();
setUpChoices();
setUpRows();
showIntro();
showFailures();
views.forEach(view => view.show());
onChange(showChanged);
followLinks();
followTheme();
followWidth();
goTo(state.at);
})();
