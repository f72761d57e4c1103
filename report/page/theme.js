// ---- Light and dark -------------------------------------------------------------------------------

const systemIsDark = window.matchMedia("(prefers-color-scheme: dark)");
let isPrinting = false; // paper is light

const isDark = () => !isPrinting && (state.theme ? state.theme === "dark" : systemIsDark.matches);

// The plots take their colours from the style sheet.
function colour(name) {
    return getComputedStyle(document.documentElement).getPropertyValue("--" + name).trim();
}
const seriesColours = () => colour("series").split(/\s+/);
const kindColour = kind => colour(kind);

function applyTheme() {
    const {dataset} = document.documentElement;
    dataset.theme = isDark() ? "dark" : "light";
    document.documentElement.classList.toggle("printing", isPrinting);
    byId("theme").textContent = isDark() ? "Light" : "Dark";
    byId("theme").setAttribute("aria-label", isDark() ? "Light colours" : "Dark colours");
    Chart.defaults.color = colour("muted");
    Chart.defaults.borderColor = colour("rule");
    Chart.defaults.font.family = getComputedStyle(document.body).fontFamily;
}

