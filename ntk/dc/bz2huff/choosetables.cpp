// The initial tables are guesses, each with short codes for one range of the alphabet. Then, in
// four rounds, every group is assigned to the table that encodes it shortest, and every table is
// rebuilt for its groups.

#include "choosetables.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

#include "codelengths.h"

namespace ntk::bz2huff {

namespace {

constexpr int rounds = 4;

// Code lengths of one symbol in all tables, or their sums over a group, as a vector: the costs of a
// group in all tables take one addition per symbol. The sum of 50 codes of 20 bits fits 16 bits.
typedef Ntk16u Costs __attribute__((vector_size(16)));

struct Group {
    const Ntk16u* symbols;
    int count;
};

// The symbols of the group that are in the alphabet: the group itself if all are.
Group usableSymbols(const Group& group, int alphabet, Ntk16u* buffer) {
    Ntk16u largest = 0;
    for (int i = 0; i < group.count; i++) {
        largest = std::max(largest, group.symbols[i]);
    }
    if (largest < alphabet) {
        return group;
    }
    Ntk16u* const end = std::copy_if(group.symbols, group.symbols + group.count, buffer,
                                     [alphabet](Ntk16u s) { return s < alphabet; });
    return {buffer, static_cast<int>(end - buffer)};
}

template <class Action>
void forEachGroup(const Ntk16u* symbols, int count, int alphabet, Action&& action) {
    Ntk16u buffer[groupSymbols];
    Ntk16u moved[groupSymbols]; // copy of a group at an odd address
    const bool isOdd = reinterpret_cast<std::uintptr_t>(symbols) % alignof(Ntk16u) != 0;
    const auto* const bytes = reinterpret_cast<const Ntk8u*>(symbols);
    for (int at = 0, group = 0; at < count; at += groupSymbols, group++) {
        const int length = std::min(groupSymbols, count - at);
        if (isOdd) {
            std::memcpy(moved, bytes + sizeof(Ntk16u) * at, sizeof(Ntk16u) * length);
        }
        const Group all{isOdd ? moved : symbols + at, length};
        action(group, usableSymbols(all, alphabet, buffer));
    }
}

void countSymbols(const Group& group, int* frequencies) {
    for (int i = 0; i < group.count; i++) {
        frequencies[group.symbols[i]]++;
    }
}

// More tables pay off only in longer blocks, because each must be described.
int tableCount(int symbols) {
    static constexpr int fewerBelow[] = {200, 600, 1200, 2400};
    int tables = minTables;
    for (const int limit : fewerBelow) {
        tables += symbols >= limit;
    }
    return tables;
}

// Splits the alphabet into ranges that occur about equally often; the n-th table has short codes
// for the n-th range.
void guessLengths(const int* frequencies, int alphabet, Plan& plan) {
    constexpr Ntk8u shortCode = 0;
    constexpr Ntk8u longCode = 15;
    int remaining = 0;
    for (int s = 0; s < alphabet; s++) {
        remaining += frequencies[s];
    }
    int symbol = 0;
    for (int t = 0; t < plan.tables; t++) {
        const int target = remaining / (plan.tables - t);
        const int first = symbol;
        int sum = 0;
        while (symbol < alphabet && (sum < target || symbol == first)) {
            sum += frequencies[symbol++];
        }
        // A range ends above its share; every second one is made to stay below it instead.
        if (t % 2 == 1 && t + 1 < plan.tables && symbol - first > 1) {
            sum -= frequencies[--symbol];
        }
        remaining -= sum;
        std::memset(plan.lengths[t], longCode, sizeof plan.lengths[t]);
        std::memset(plan.lengths[t] + first, shortCode, static_cast<std::size_t>(symbol - first));
    }
}

void gatherCosts(const Plan& plan, int alphabet, Costs* costs) {
    for (int s = 0; s < alphabet; s++) {
        costs[s] = Costs{};
        for (int t = 0; t < plan.tables; t++) {
            costs[s][t] = plan.lengths[t][s];
        }
    }
}

int cheapestTable(const Group& group, const Costs* costs, int tables) {
    Costs sums{};
    for (int i = 0; i < group.count; i++) {
        sums += costs[group.symbols[i]];
    }
    int best = 0;
    for (int t = 1; t < tables; t++) {
        best = sums[t] < sums[best] ? t : best;
    }
    return best;
}

void refine(const Ntk16u* symbols, int count, int alphabet, Plan& plan) {
    Costs costs[maxAlphabet];
    gatherCosts(plan, alphabet, costs);
    int frequencies[maxTables][maxAlphabet] = {};
    forEachGroup(symbols, count, alphabet, [&](int number, const Group& group) {
        const int table = cheapestTable(group, costs, plan.tables);
        plan.selectors[number] = static_cast<Ntk8u>(table);
        countSymbols(group, frequencies[table]);
    });
    for (int t = 0; t < plan.tables; t++) {
        makeCodeLengths(frequencies[t], alphabet, plan.lengths[t]);
    }
}

} // namespace

void choosePlan(const Ntk16u* symbols, int count, int alphabet, Plan& plan) {
    int frequencies[maxAlphabet] = {};
    forEachGroup(symbols, count, alphabet,
                 [&](int, const Group& group) { countSymbols(group, frequencies); });
    plan.tables = tableCount(count);
    plan.groups = (count + groupSymbols - 1) / groupSymbols;
    guessLengths(frequencies, alphabet, plan);
    for (int round = 0; round < rounds; round++) {
        refine(symbols, count, alphabet, plan);
    }
}

} // namespace ntk::bz2huff
