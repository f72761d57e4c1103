// What the files of this folder make together is one script in one function: no name of it is seen
// from outside.
(() => {
"use strict";

// ---- Numbers: what is computed from them and how they are written --------------------------------

const missing = "\u2013"; // a dash where there is nothing to tell

const ascending = (a, b) => a - b;

function quantile(values, share) {
    const sorted = [...values].sort(ascending);
    const place = (sorted.length - 1) * share;
    const below = Math.floor(place);
    const above = Math.ceil(place);
    return sorted[below] + (sorted[above] - sorted[below]) * (place - below);
}
const median = values => quantile(values, 0.5);

function geometricMean(values) {
    return Math.exp(values.reduce((sum, value) => sum + Math.log(value), 0) / values.length);
}

const sum = values => values.reduce((total, value) => total + value, 0);

// Not Math.max(...values): that fails for very many.
const largest = values => values.reduce((best, value) => Math.max(best, value), -Infinity);
const smallest = values => values.reduce((best, value) => Math.min(best, value), Infinity);

const grouped = new Intl.NumberFormat("en");
const threeDigits = new Intl.NumberFormat("en", {
    minimumSignificantDigits: 3, maximumSignificantDigits: 3,
});

const isNumber = value => typeof value === "number" && Number.isFinite(value);

// Three digits: more would be noise.
const figure = value => (isNumber(value) ? threeDigits.format(value) : missing);
const whole = value => (isNumber(value) ? grouped.format(Math.round(value)) : missing);

function percent(ratio) {
    if (!isNumber(ratio)) {
        return missing;
    }
    const value = ratio * 100;
    const size = Math.abs(value);
    const digits = value === 0 || size >= 10 ? 0 : size < 0.1 ? 2 : 1;
    return value.toFixed(digits) + "%";
}

// A ratio as a change, "+2.14%", with the digits of ntkcompare, and very large ones as a factor.
function change(ratio) {
    if (!isNumber(ratio)) {
        return missing;
    }
    if (ratio >= 2) {
        return "\u00d7" + figure(ratio);
    }
    const value = (ratio - 1) * 100;
    const text = Math.abs(value).toFixed(2) + "%";
    return (text === "0.00%" ? "" : value < 0 ? "\u2212" : "+") + text;
}

// 16384 as 16K, as everybody speaks of block lengths; other lengths as they are.
const lengthText = bytes =>
    !isNumber(bytes) ? missing : bytes >= 1024 && bytes % 1024 === 0 ? bytes / 1024 + "K" : whole(bytes);

function bytesText(bytes) {
    for (const [unit, size] of [["MB", 1e6], ["KB", 1e3]]) {
        if (bytes >= size) {
            return (bytes / size).toFixed(bytes >= 100 * size ? 0 : 1) + " " + unit;
        }
    }
    return bytes + " bytes";
}

const counted = (count, one, many = one + "s") => `${whole(count)} ${count === 1 ? one : many}`;

function listed(words) {
    return words.length < 2 ? words.join("") : words.slice(0, -1).join(", ") + " and " + words.at(-1);
}

