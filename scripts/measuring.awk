# Tables of docs/measuring.md from the rows that ntkbench --markdown printed.
#
#   awk -v table=rows -v files="book1 pic" -f measuring.awk FIGURES       the rows of these files
#   awk -v table=ratio -f measuring.awk FIGURES     a line for each pair of calls, a column for each
#                                                   file; size: the same of the sizes
#   awk -v table=standing -v call=... -v against=... -v wanted="0.70, size 1.00" -v files=... \
#       -v title=... -v remark=... -f measuring.awk FIGURES
#       one line: the worst of the rows whose call and against fit the expressions, on these files
#       (on all when none are named), and how many files are within what is wanted, which may be
#       empty; the remark stands where not all are
#
# What follows a colon in the name of the other call is of one file and does not tell pairs apart.

BEGIN {
    FS = " *\\| *"
    named = split(files, list, " ")
    for (i = 1; i <= named; ++i)
        isChosen[list[i]] = 1
}

FNR <= 2 && table == "rows"

FNR > 2 {
    file = $3
    if (named > 0 && !(file in isChosen))
        next
    if (table == "rows")
        print
    else if (table == "standing")
        judge()
    else
        remember()
}

END {
    if (table == "standing")
        printStanding()
    else if (table != "rows")
        printFiles()
}

function remember(    pair) {
    pair = $2 " | " kindOf($6)
    if (!(pair in pairSeen)) {
        pairSeen[pair] = 1
        pairs[++pairCount] = pair
    }
    if (!(file in fileSeen)) {
        fileSeen[file] = 1
        columns[++fileCount] = file
    }
    cell[pair, file] = table == "size" ? $10 : $8
    hasSizes = hasSizes || ($10 != "" && $10 != "1.000")
}

function kindOf(name) {
    sub(/:.*/, "", name)
    return name
}

# Nothing when it would say no more than that all streams are of the same length.
function printFiles(    f, p, line, rule) {
    if (table == "size" && !hasSizes)
        return
    line = "| " table ": call | against |"
    rule = "|---|---|"
    for (f = 1; f <= fileCount; ++f) {
        line = line " " columns[f] " |"
        rule = rule "---:|"
    }
    print "\n" line "\n" rule
    for (p = 1; p <= pairCount; ++p) {
        line = "| " pairs[p] " |"
        for (f = 1; f <= fileCount; ++f)
            line = line " " cell[pairs[p], columns[f]] " |"
        print line
    }
}

function judge(    mostRatio, mostSize) {
    if ($2 !~ "^(" call ")$" || $6 !~ "^(" against ")$")
        return
    mostRatio = mostSize = wanted
    sub(/,.*/, "", mostRatio)
    if (!sub(/.*, size /, "", mostSize))
        mostSize = ""
    if (!(file in fileSeen)) {
        fileSeen[file] = 1
        ++fileCount
    }
    if (!(kindOf($6) in otherSeen)) {
        otherSeen[kindOf($6)] = 1
        others = others (others == "" ? "" : " and ") kindOf($6)
    }
    if ($8 + 0 > worst + 0) {
        worst = $8
        worstFile = file
    }
    if ($10 + 0 > largest + 0) {
        largest = $10
        largestFile = file
    }
    if ((mostRatio != "" && $8 + 0 > mostRatio + 0) || (mostSize != "" && $10 + 0 > mostSize + 0))
        isBeyond[file] = 1
}

function printStanding(    f, within) {
    if (fileCount == 0) {
        print "measuring.awk: no row fits " call " and " against > "/dev/stderr"
        exit 1
    }
    within = fileCount
    for (f in isBeyond)
        --within
    printf "| %s | %s | %s | %s (%s) | %s | %s | %s |\n", title, others, wanted, worst,
           worstFile, largest == "" ? "" : largest " (" largestFile ")",
           wanted == "" ? "" : within " of " fileCount, within < fileCount ? remark : ""
}
