# A performance table on one screen: a line for each function, over all its measurements.
#
#   LC_ALL=C awk -v mhz=2600 -f scripts/overview.awk out/ntkperf.csv
#
# mhz is the frequency of the clock counter; without it there are no MB/s.

BEGIN {
    FS = ","
    # These count in something else than a byte of data, of which a unit is so many; 0: that many
    # tells the ratio of the line.
    unit["ntksDecodeLZ4_8u"] = unit["ntksDecodeZfp444_32f"] = "compressed byte"
    bytes["ntksDecodeLZ4_8u"] = bytes["ntksDecodeZfp444_32f"] = 0
    unit["ntksEncodeZfp444_32f"] = "value"
    bytes["ntksEncodeZfp444_32f"] = 4
}

!named {
    for (i = 1; i <= NF; ++i)
        column[$i] = i
    named = $1 == "Function"
    next
}

$column["Clocks"] ~ /^[0-9]/ {
    name = $column["Function"]
    if (!(name in count)) {
        order[++functions] = name
        count[name] = 0
    }
    n = ++count[name]
    clocks[name, n] = $column["Clocks"] + 0
    ratio = $column["Ratio"]
    if (ratio ~ /^[0-9]/)
        ratios[name, ++ratioCount[name]] = ratio + 0
    unitBytes = name in bytes ? bytes[name] : 1
    if (unitBytes == 0)
        unitBytes = ratio + 0
    if (clocks[name, n] > 0)
        speeds[name, ++speedCount[name]] = mhz * unitBytes / clocks[name, n]
}

END {
    printf "\nClocks of %d functions: ", functions
    print "median, lowest and highest over all files, lengths, variants\n"
    printf "%-28s %5s  %-15s %7s %7s %7s %6s%s\n", "Function", "Lines", "Per", "Clocks", "lowest",
           "highest", "Ratio", mhz ? "     MB/s" : ""
    for (f = 1; f <= functions; ++f)
        printLine(order[f])
    print "\nRatio: data over compressed data, the median; of Dict and LZ4HC something else, see" \
          " docs/guide.md"
    if (mhz)
        print "MB/s: millions of bytes of uncompressed data a second, the median, at " mhz " MHz"
    else
        print "No MB/s: the clock counter's frequency is not known yet; another run may know it"
}

function printLine(name,    n, middle, speed, ratio) {
    n = count[name]
    middle = median(clocks, name, n) # which sorts them
    ratio = ratioCount[name] ? short(median(ratios, name, ratioCount[name])) : "-"
    speed = speedCount[name] ? short(median(speeds, name, speedCount[name])) : "-"
    printf "%-28s %5d  %-15s %7s %7s %7s %6s%s\n", name, n, name in unit ? unit[name] : "byte",
           short(middle), short(clocks[name, 1]), short(clocks[name, n]), ratio,
           mhz ? sprintf(" %8s", speed) : ""
}

# Sorts values[name, 1..n].
function median(values, name, n,    i, j, value) {
    for (i = 2; i <= n; ++i) {
        value = values[name, i]
        for (j = i; j > 1 && values[name, j - 1] > value; --j)
            values[name, j] = values[name, j - 1]
        values[name, j] = value
    }
    i = int((n + 1) / 2)
    return n % 2 ? values[name, i] : (values[name, i] + values[name, i + 1]) / 2
}

# Three digits, as in the table.
function short(value,    decimals, step) {
    for (decimals = 4; decimals > 0 && value * 10 ^ decimals >= 999.5;)
        --decimals
    for (step = 1; value / step >= 999.5;)
        step *= 10
    if (step > 1)
        return sprintf("%d", int(value / step + 0.5) * step)
    return sprintf("%." decimals "f", value)
}
