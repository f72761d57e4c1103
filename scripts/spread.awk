# What differs between the passes of a run, from what ntkreport --csv has of them.
#
#   ntkreport --csv=- out/ntkperf.jsonl | LC_ALL=C awk -f scripts/spread.awk

BEGIN { FS = "," }

NR == 1 {
    for (i = 1; i <= NF; ++i)
        column[$i] = i
    next
}

$column["runs"] > 1 && $column["spread"] != "" {
    spreads[++n] = $column["spread"] + 0
    passes = $column["runs"] > passes ? $column["runs"] + 0 : passes
    total[$column["function"]] += spreads[n]
    ++count[$column["function"]]
}

END {
    if (n == 0) {
        print "Between the passes nothing can be compared: no case has figures of two"
        exit
    }
    printf "Between the %d passes the figures spread by %s (the middle one of %d cases),\n", passes,
           percent(median(n)), n
    for (name in total)
        if (total[name] / count[name] > most) {
            most = total[name] / count[name]
            worst = name
        }
    if (worst != "")
        printf "most of all those of %s, by %s on average\n", worst, percent(most)
}

function percent(ratio) {
    return sprintf("%.1f%%", 100 * ratio)
}

# Sorts spreads[1..n].
function median(n,    i, j, value) {
    for (i = 2; i <= n; ++i) {
        value = spreads[i]
        for (j = i; j > 1 && spreads[j - 1] > value; --j)
            spreads[j] = spreads[j - 1]
        spreads[j] = value
    }
    i = int((n + 1) / 2)
    return n % 2 ? spreads[i] : (spreads[i] + spreads[i + 1]) / 2
}
