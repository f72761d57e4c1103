// ---- Elements. Texts become text nodes, whatever they contain -----------------------------------

const byId = id => document.getElementById(id);

function element(name, properties = {}, ...children) {
    const made = document.createElement(name);
    for (const [key, value] of Object.entries(properties)) {
        if (key.startsWith("aria-")) {
            made.setAttribute(key, value);
        } else {
            made[key] = value;
        }
    }
    made.append(...children);
    return made;
}

// choices: [{value, text, group}], those of one group behind one another.
function fillChoices(select, choices, value) {
    const parents = new Map([[undefined, select]]);
    select.replaceChildren();
    for (const choice of choices) {
        if (!parents.has(choice.group)) {
            const parent = element("optgroup", {label: choice.group});
            parents.set(choice.group, parent);
            select.append(parent);
        }
        const option = element("option", {value: choice.value}, choice.text);
        parents.get(choice.group).append(option);
    }
    select.value = value;
}

const narrow = window.matchMedia("(max-width: 40rem)");
const isNarrow = () => narrow.matches;

