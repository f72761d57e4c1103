// ---- Comparisons: those of ntkcompare, and those of two groups of runs -----------------------------

const compared = (comparison, index) => ({
    title: ["ntkcompare", comparison.started && dayText(comparison.started), baseName(comparison.file)]
        .filter(Boolean).join(", "),
    isJudged: true, ...comparison,
    noise: comparison.medianHalfWidth,
    cases: objects(comparison.cases).map(one => ({...one, effect: one.ratio})),
    value: String(index),
});

const relativeRange = measured => (measured.high - measured.low) / 2 / measured.clocks;

// The runs of the two sides were not made in turns, so that only ranges that lie apart, by more
// than the figures spread anyway, say anything.
function verdictOf({low, high, effect}, noise) {
    const isApart = low > 1 || high < 1;
    return isApart && Math.abs(effect - 1) > noise ? (effect > 1 ? "slower" : "faster") : "open";
}

function groupEffect(base, changed) {
    const hasRange = base.samples.length > 1 && changed.samples.length > 1;
    return {
        function: base.function,
        parameters: [base.variant, base.file, base.length && lengthText(base.length)].filter(Boolean).join(", "),
        base: base.clocks, changed: changed.clocks, effect: changed.clocks / base.clocks,
        low: hasRange ? changed.low / base.high : null, high: hasRange ? changed.high / base.low : null,
        failure: "", hasRange,
    };
}

function comparedGroups(base, changed) {
    const others = new Map(casesByGroup.get(changed).map(measured => [measured.key, measured]));
    const pairs = casesByGroup.get(base)
        .map(measured => [measured, others.get(measured.key)])
        .filter(([one, other]) => one.isMeasured && other?.isMeasured && one.isPerByte === other.isPerByte);
    const ranges = pairs.flat().filter(one => one.samples.length > 1).map(relativeRange);
    const noise = ranges.length ? median(ranges) : null;
    const list = pairs.map(pair => groupEffect(...pair));
    list.forEach(one => { one.verdict = one.hasRange ? verdictOf(one, noise) : "open"; });
    return {noise, cases: list};
}

function groupComparison(base, changed, value) {
    const label = index => report.groups[index].label || `runs ${index + 1}`;
    return {
        title: `Runs: ${label(changed)} against ${label(base)}`, base: label(base), changed: label(changed),
        isJudged: false, tolerance: null, failure: "", complete: true, value: String(value),
        runs: [base, changed].map(index => report.groups[index].runs.length),
        ...comparedGroups(base, changed),
    };
}

// The pairs of groups that have something in common: the last builds first, each with those before.
function pairsOfGroups() {
    const keys = report.groups.map((_, index) =>
        new Set((casesByGroup.get(index) ?? []).filter(one => one.isMeasured).map(one => one.key)));
    const isCommon = (one, other) => [...keys[one]].some(key => keys[other].has(key));
    return keys.flatMap((_, base) => keys.map((_, changed) => [base, changed]))
        .filter(([base, changed]) => base < changed)
        .sort(([base, changed], [otherBase, other]) => other - changed || otherBase - base)
        .filter(([base, changed]) => isCommon(base, changed)).slice(0, 20);
}

const comparisonMakers = [
    ...report.comparisons.map((one, index) => () => compared(one, index)),
    ...pairsOfGroups().map(([base, changed], index) =>
        () => groupComparison(base, changed, report.comparisons.length + index)),
];
const madeComparisons = new Map();

function comparison(index) {
    if (!madeComparisons.has(index)) {
        madeComparisons.set(index, comparisonMakers[index]());
    }
    return madeComparisons.get(index);
}

